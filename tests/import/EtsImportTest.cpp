#include "import/EtsImport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/EditorWorld.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* formatMessage = "This file is not in ETS2 or ETS3 Esf format.";

std::string record(const std::string& path, const std::string& name,
                   const std::string& type = "EIS 1 'Switching' (1 Bit)") {
    return path + "\t" + name + "\t" + type + "\tLow\t\r\n";
}

class EtsImportTest : public testing::Test, public EditorWorld {
 protected:
    void importText(const std::string& text) {
        disk.files["/plans/house.esf"] = text;
        desktop.willChoose("/plans/house.esf");
        editor.mnuImpCfg_Click();
    }

    /// "Light_1.Lamp EIS1 0 1/1/1" for each item, in the registry's order.
    std::vector<std::string> items() const {
        std::vector<std::string> lines;
        for (const auto& [key, item] : document.items())
            lines.push_back(key + " " + item->sDataType + " " + std::to_string(item->nElements) +
                            " " + item->sAddress);
        return lines;
    }
};

TEST_F(EtsImportTest, MakesADeviceOfEachMiddleGroupAndAnItemOfEachAddress) {
    document.settings() = {};
    document.settings().port = "USB";
    document.settings().timeout = 700;
    importText("My house, no tab here\r\n" + record("A.Light 1.1/1/0", "Lamp 1/2") +
               record("A.Heat.1/2/0",
                      "K\xFC"
                      "che") +
               record("B.Light 1.2/1/0", "Door") + "\r\n");

    EXPECT_EQ(outline(document), "Light_1[Lamp_1_2 Door] Heat[K_che]");
    EXPECT_THAT(items(), ElementsAre("Light_1.Lamp_1_2 EIS1 0 1/1/0", "Heat.K_che EIS1 0 1/2/0",
                                     "Light_1.Door EIS1 0 2/1/0"));
    const auto item = document.items().at("Heat.K_che");
    EXPECT_EQ(item->sAccessRight + item->sComment + item->sPlcname, "READWRITE");
    EXPECT_FALSE(item->bFlag);
    const auto device = document.devices().at("Light_1");
    EXPECT_EQ(device->getPort() + " " + device->getEdiType(), "USB PEI16x9600");
    EXPECT_EQ(device->getTimeout(), 700);

    EXPECT_EQ(document.currentPath(), "/plans/house.xml");
    EXPECT_FALSE(disk.files.contains("/plans/house.xml")) << "nothing is written";
    EXPECT_TRUE(document.open && document.saved);
    EXPECT_EQ(document.deviceCounter, 3);
    EXPECT_EQ(document.branchCounter, 1);
    EXPECT_EQ(document.itemCounter, 4);
    EXPECT_EQ(document.tree().selected(), document.tree().root());
    EXPECT_TRUE(document.tree().nodeAt("Heat").expanded());
    EXPECT_EQ(columns(), "Plc Name 0.5, Port 0.2, EDI Type 0.3");
    EXPECT_EQ(rows(), "Light_1|USB|PEI16x9600\nHeat|USB|PEI16x9600\n");
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::configurationOpen));
    EXPECT_TRUE(editor.TreeView1.visible && editor.TreeView1.enabled);
    EXPECT_EQ(desktop.lastChooser, "Select an ETS OPC Export file|ESF files |*.esf");
    EXPECT_THAT(desktop.messages(), IsEmpty());
    expectTreeAndRegistriesAgree(document);
}

TEST_F(EtsImportTest, ReadsUtf8WhereTheFileIsMarkedAndLinesOnlyAtCrLf) {
    importText("\xEF\xBB\xBF" + record("A.Flur.1/1/0",
                                       "K\xC3\xBC"
                                       "che"));
    EXPECT_EQ(outline(document), "Flur[K_che]");
    importText("A.L.1/1/0\tOne\tEIS 1\nA.L.1/1/1\tTwo\tEIS 1\n");
    EXPECT_EQ(outline(document), "L[One]") << "lines that end in LF alone are one line";
    importText("a title\nand more\r\n");
    EXPECT_EQ(outline(document), "");
    EXPECT_EQ(document.itemCounter, 1);
    EXPECT_TRUE(document.open && document.saved);
    EXPECT_THAT(desktop.messages(), IsEmpty());
}

TEST_F(EtsImportTest, StopsAtTheFirstRecordThatItCannotTakeAndKeepsTheRest) {
    const std::string good = record("A.Light.1/1/1", "Lamp");
    const struct {
        std::string bad;
        const char* outline;
    } cases[] = {
        {"A.Light.1/1/2\tonly two fields\r\n", "Light[Lamp]"},
        {record("no group", "Door"), "Light[Lamp]"},
        {record("A.Light.1/1/2", "Dim", "EIS 2 'Dimming - control' (4 Bit)"), "Light[Lamp]"},
        {record("A.Light.1/1/2", "Lamp"), "Light[Lamp]"},
        {record("A.Light.1/1/2", "lamp"), "Light[Lamp]"},
        {record("A.Light.1/1/2", "Raw", "Uncertain (40000 Byte)"), "Light[Lamp]"},
        {record("A.config.1/1/2", "Lamp"), "Light[Lamp]"},
        {record("A..1/1/2", "Lamp"), "Light[Lamp]"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.bad);
        desktop.forgetMessages();
        open("/old.xml", configuration(plc("Old", tag("x") + tag("y"))));
        click("Old");
        const std::string enabled = enabledNow();
        importText(good + each.bad + record("A.Light.1/1/9", "Later"));

        EXPECT_THAT(desktop.messages(), ElementsAre(formatMessage));
        EXPECT_EQ(outline(document), each.outline);
        EXPECT_EQ(document.currentPath(), "/plans/house.xml");
        EXPECT_EQ(document.itemCounter, 3) << "of the old configuration";
        EXPECT_EQ(enabledNow(), enabled);
        EXPECT_EQ(desktop.pointer, Pointer::normal);
        expectTreeAndRegistriesAgree(document);
    }
}

TEST_F(EtsImportTest, SurvivesFilesThatAreNoExports) {
    desktop.willChoose("/nowhere.esf");
    editor.mnuImpCfg_Click();
    EXPECT_THAT(desktop.messages(), ElementsAre(formatMessage)) << "a file that cannot be read";
    EXPECT_EQ(outline(document), "");
    EXPECT_FALSE(document.open);

    importText(std::string(100'000'000, 'x'));
    importText(std::string("A.L.1/1/0\tNa\0me\tEIS 1\r\n", 23));
    EXPECT_EQ(outline(document), "L[Na_me]");
    EXPECT_THAT(desktop.messages(), ElementsAre(formatMessage));
}

TEST_F(EtsImportTest, AsksToSaveFirstAndChangesNothingWhenItIsStopped) {
    open("/old.xml", configuration(plc("Old")));
    change();
    desktop.willAnswer({Answer::yes, Answer::cancel});
    editor.mnuImpCfg_Click();
    desktop.willAnswer({Answer::no});  // and the chooser is cancelled
    editor.mnuImpCfg_Click();
    desktop.willAnswer({Answer::no});
    desktop.chooserFault = ErrorNumber::pathFileAccessError;
    editor.mnuImpCfg_Click();
    EXPECT_THAT(desktop.messages(),
                ElementsAre("Do you want to save active configuration?",
                            "File /old.xml already existing. Overwrite?",
                            "Do you want to save active configuration?",
                            "Do you want to save active configuration?",
                            "ShowDialImport Error n. 75  Path/File access error"));
    EXPECT_EQ(outline(document), "Old[]");
    EXPECT_EQ(document.currentPath(), "/old.xml");
    EXPECT_FALSE(document.saved);
}

TEST_F(EtsImportTest, ImportsTheSampleAndStopsAtADimmer) {
    const auto machine = systemDisk();
    importText(machine->read(SAMPLES_DIR "/house.esf"));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_EQ(document.items().count(), 150);
    EXPECT_EQ(document.devices().count(), 15);

    importText(machine->read(SAMPLES_DIR "/house-dimmer.esf"));
    EXPECT_THAT(desktop.messages(), ElementsAre(formatMessage));
    EXPECT_EQ(document.items().count(), 10);

    desktop.willAnswer({});
    importText(machine->read(SAMPLES_DIR "/house.esf"));
    EXPECT_EQ(document.items().count(), 150) << "the editor goes on";
}

}  // namespace
