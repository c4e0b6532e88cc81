#include "file/ImportXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr const char* path = "/home/ann/house.xml";

class ImportXMLTest : public ::testing::Test {
 protected:
    FakeDisk disk;
    FakeDesktop desktop;
    Document document;

    bool read(const std::string& text) {
        disk.files[path] = text;
        desktop.forgetMessages();
        document.startAt(path);
        const bool success = ImportXML(path, document, disk, desktop, [] {});
        EXPECT_EQ(desktop.pointer, Pointer::normal);
        expectTreeAndRegistriesAgree(document);
        return success;
    }
};

TEST_F(ImportXMLTest, ReadsAConfigurationIntoTreeRecordsAndSettings) {
    ASSERT_TRUE(read(std::string(exampleText)));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_EQ(outline(document), "Plant[Light1 FLOOR1[Text1]]");
    EXPECT_EQ(document.settings().port + document.settings().ediType, "COM3USBEMI1");
    EXPECT_EQ(document.settings().timeout, 2500);

    const auto& device = *document.devices().at("Plant");
    EXPECT_EQ(device.getPort() + device.getEdiType(), "COM2PEI10x19200");
    EXPECT_EQ(device.getTimeout(), 1500);
    const auto& light = *document.items().at("Plant.Light1");
    EXPECT_EQ(light.sComment + light.sAddress + light.sDataType + light.sAccessRight,
              "Hall light1/2/3EIS1READWRITE");
    EXPECT_TRUE(light.bFlag);
    const auto& text = *document.items().at("Plant.FLOOR1.Text1");
    EXPECT_EQ(text.sPlcname, "Plant");
    EXPECT_EQ(text.nElements, 14);
    EXPECT_FALSE(text.bFlag);

    for (const char* shown : {"config", "Plant", "Plant.FLOOR1"})
        EXPECT_TRUE(document.tree().nodeAt(shown).expanded()) << shown;
}

TEST_F(ImportXMLTest, TellsOfTheFirstFaultsAndCountsTheOthers) {
    std::string items;
    for (int i = 0; i < 1209; ++i)
        items += "<tag/>";
    EXPECT_TRUE(read(configuration(plc("A", items + tag("x")))));
    const std::string fault = " Error n. 94  Invalid use of Null in BrowseBranch";
    EXPECT_THAT(desktop.messages(),
                ElementsAre(fault, fault, fault, fault, fault, "\u2026 and 1,204 more"));
    EXPECT_EQ(outline(document), "A[x]");
}

TEST_F(ImportXMLTest, RefusesWhatLiesTooDeepBeforeAnythingIsMadeOfIt) {
    const auto nested = [](int levels, const std::string& name, const std::string& innermost) {
        std::string contents;
        for (int i = 0; i < levels; ++i)
            contents += "<" + name + ">";
        contents += innermost;
        for (int i = 0; i < levels; ++i)
            contents += "</" + name + ">";
        return configuration(plc("A") + plc("B", contents));
    };
    const std::string tooLong(600, 'n');
    const std::string deep = " Error n. 321  Branches lie within one another more than 1,000 deep";
    const std::string lengthy =
        " Error n. 321  The path to a branch or an item is longer than 64 KB";
    for (const auto& [text, message] : std::vector<std::pair<std::string, std::string>>{
             {nested(1001, "F", ""), deep},
             {nested(60000, "F", tag("x")), deep},
             {nested(200, tooLong, ""), lengthy},
             {nested(1, "F", tag(std::string(65533, 'n'))), lengthy}}) {
        EXPECT_FALSE(read(text));
        EXPECT_THAT(desktop.messages(), ElementsAre(message + " in ImportXML"));
        EXPECT_TRUE(outline(document).empty());
    }
    EXPECT_TRUE(read(nested(1, "F", tag(std::string(65532, 'n')))));
}

}  // namespace
