#include "file/Lifecycle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using enum Answer;

const std::string house = "/home/ann/house.xml";
const std::string other = "/home/ann/other.xml";
const std::string example = configuration(plc("Plant", tag("Light1")));

class LifecycleTest : public ::testing::Test, protected EditorWorld {
 protected:
    const std::string newFile = desktop.folder + "OPCOlvan.xml";
};

/// "Plant[Light1], unsaved, wrote house, recorded house, ended".
std::string stateOf(EditorWorld& world) {
    const Document& document = world.document;
    std::string state = outline(document);
    state += !document.open ? ", closed" : document.saved ? ", saved" : ", unsaved";
    if (world.disk.files[house] != example) state += ", wrote house";
    if (world.disk.files[other].starts_with("<?xml")) state += ", wrote other";
    for (const auto& call : world.registry.calls)
        state += call.ends_with(house) ? ", recorded house" : ", recorded other";
    if (world.applicationEnded) state += ", ended";
    return state;
}

/// Every way through every command, from a configuration that is open in the file `house` and
/// not saved. The chooser gives the file `other`, which exists.
TEST(Lifecycle, AsksAndSavesAndStopsAsTheUserSays) {
    const std::string active = "Do you want to save active configuration?";
    const std::string close = "Do you want to save this configuration?";
    const std::string overwrite = "File " + house + " already existing. Overwrite?";
    const std::string saved = house + " saved";
    const std::string diskFull = " Error n. 61  Disk full in CreateXML";
    const std::string unreadable = " Error n. 70  Permission denied in ImportXML";
    const std::string badOpen = "ShowDialSave Error n. 75  Path/File access error";
    const std::string badSave = " Error n. 75  Path/File access error in mnuSaveAs_Click";
    const std::string untouched = "Plant[Light1], unsaved";
    const std::string nowSaved = "Plant[Light1], saved";
    const std::string wroteHouse = ", wrote house, recorded house";
    const std::string wroteOther = ", wrote other, recorded other";

    const std::string changed = "File " + house +
                                " was changed by another program since it was last read or saved "
                                "here. Go on with saving?";

    enum Fault { none, noChoice, chooserFails, readFails, writeFails, recordFails, otherProgram };
    const struct {
        std::string command;
        std::vector<Answer> answers;
        Fault fault;
        std::vector<std::string> messages;
        std::string end;
    } ways[] = {
        {"mnuNewCfg", {no}, none, {active}, ", unsaved"},
        {"mnuNewCfg", {yes, yes}, none, {active, overwrite, saved}, ", unsaved" + wroteHouse},
        {"mnuNewCfg", {yes, no}, none, {active, overwrite}, ", unsaved" + wroteOther},
        {"mnuNewCfg", {yes, no}, noChoice, {active, overwrite}, untouched},
        {"mnuNewCfg", {yes, cancel}, none, {active, overwrite}, untouched},
        {"mnuNewCfg", {yes, yes}, writeFails, {active, overwrite, diskFull}, untouched},

        {"mnuOpenCfg", {no}, none, {active}, "Other[], saved"},
        {"mnuOpenCfg", {yes, yes}, none, {active, overwrite, saved}, "Other[], saved" + wroteHouse},
        {"mnuOpenCfg", {no}, noChoice, {active}, untouched},
        {"mnuOpenCfg", {no}, chooserFails, {active, badOpen}, untouched},
        {"mnuOpenCfg", {no}, readFails, {active, unreadable}, untouched},
        {"mnuOpenCfg", {yes, no}, noChoice, {active, overwrite}, untouched},
        {"mnuOpenCfg", {yes, cancel}, none, {active, overwrite}, untouched},
        {"mnuOpenCfg", {yes, yes}, writeFails, {active, overwrite, diskFull}, untouched},

        {"mnuCloseCfg", {no}, none, {close}, "nothing, closed"},
        {"mnuCloseCfg",
         {yes, yes},
         none,
         {close, overwrite, saved},
         "nothing, closed" + wroteHouse},
        {"mnuCloseCfg", {yes, no}, noChoice, {close, overwrite}, untouched},
        {"mnuCloseCfg", {yes, cancel}, none, {close, overwrite}, untouched},
        {"mnuCloseCfg", {yes, yes}, writeFails, {close, overwrite, diskFull}, untouched},

        {"mnuSaveCfg", {yes}, none, {overwrite, saved}, nowSaved + wroteHouse},
        {"mnuSaveCfg", {no}, none, {overwrite}, nowSaved + wroteOther},
        {"mnuSaveCfg", {no}, noChoice, {overwrite}, untouched},
        {"mnuSaveCfg", {no}, chooserFails, {overwrite, badSave}, untouched},
        {"mnuSaveCfg", {cancel}, none, {overwrite}, untouched},
        {"mnuSaveCfg", {yes}, writeFails, {overwrite, diskFull}, untouched},
        {"mnuSaveCfg", {yes}, recordFails, {overwrite, saved}, "Plant[Light1], saved, wrote house"},
        {"mnuSaveCfg", {no}, otherProgram, {changed}, untouched},
        {"mnuSaveCfg", {yes, cancel}, otherProgram, {changed, overwrite}, untouched},
        {"mnuSaveAs", {}, otherProgram, {}, nowSaved + wroteOther},
        {"mnuSaveAs", {}, none, {}, nowSaved + wroteOther},
        {"mnuSaveAs", {}, noChoice, {}, untouched},
        {"mnuSaveAs", {}, chooserFails, {badSave}, untouched},
        {"mnuSaveAs", {}, writeFails, {diskFull}, untouched},

        // A declined overwrite keeps nobody from leaving; a failed save does, or the work were
        // lost.
        {"mnuExit", {no}, none, {active}, "nothing, closed, ended"},
        {"mnuExit",
         {yes, yes},
         none,
         {active, overwrite, saved},
         "nothing, closed" + wroteHouse + ", ended"},
        {"mnuExit", {yes, cancel}, none, {active, overwrite}, "nothing, closed, ended"},
        {"mnuExit", {yes, no}, noChoice, {active, overwrite}, "nothing, closed, ended"},
        {"mnuExit", {yes, yes}, writeFails, {active, overwrite, diskFull}, untouched},
        {"Form_Unload", {no}, none, {active}, "nothing, closed, ended"},
        {"Form_Unload", {yes, cancel}, none, {active, overwrite}, "nothing, closed, ended"},
        {"Form_Unload", {yes, yes}, writeFails, {active, overwrite, diskFull}, untouched},
    };
    for (const auto& [command, answers, fault, messages, end] : ways) {
        SCOPED_TRACE(command + ", " + ::testing::PrintToString(messages));
        EditorWorld world;
        world.open(house, example);
        world.change();
        world.disk.files[other] = configuration(plc("Other"));
        world.desktop.willChoose(other);
        for (const Answer answer : answers)
            world.desktop.willAnswer({answer});
        if (fault == noChoice) world.desktop.chooserFault = ErrorNumber::cancelled;
        if (fault == chooserFails) world.desktop.chooserFault = ErrorNumber::pathFileAccessError;
        if (fault == readFails) world.disk.readFault = ErrorNumber::permissionDenied;
        if (fault == writeFails) world.disk.writeFault = ErrorNumber::diskFull;

        world.registry.fails = fault == recordFails;
        if (fault == otherProgram) ++world.disk.time;

        if (command == "Form_Unload") {
            EXPECT_EQ(world.editor.Form_Unload(), end != untouched);
        } else {
            world.editor.run(commandNamed(command));
        }
        EXPECT_THAT(world.desktop.messages(), ElementsAreArray(messages));
        EXPECT_EQ(world.desktop.answersLeft(), 0U);
        EXPECT_EQ(stateOf(world), end);
        EXPECT_EQ(world.editor.TreeView1.visible, world.document.open);
        EXPECT_EQ(world.editor.ListView1State.visible, world.document.open);
        if (!world.applicationEnded) {
            EXPECT_EQ(world.enabledNow(),
                      enabledIn(world.document.open ? commandStates::configurationOpen
                                                    : commandStates::noConfiguration));
        }
        EXPECT_EQ(world.desktop.pointer, Pointer::normal);
        expectTreeAndRegistriesAgree(world.document);
    }
}

TEST_F(LifecycleTest, AsksNothingWhenNothingWasChanged) {
    open(house, example);
    editor.mnuCloseCfg_Click();
    EXPECT_EQ(stateOf(*this), "nothing, closed");
    EXPECT_THAT(editor.ListView1.rows(), IsEmpty());
    for (const char* command : {"mnuSaveCfg", "mnuSaveAs", "mnuCloseCfg", "mnuExit"})
        editor.run(commandNamed(command));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_THAT(desktop.lastChooser, ::testing::StartsWith("Open")) << "there is nothing to save";
    EXPECT_TRUE(applicationEnded);
}

TEST_F(LifecycleTest, NewBeginsAnEmptyConfigurationInTheDefaultFolder) {
    open(house, std::string(exampleText));
    editor.mnuNewCfg_Click();
    EXPECT_EQ(document.currentPath(), newFile);
    EXPECT_EQ(document.tree().selected(), document.tree().root());
    EXPECT_TRUE(document.settings() == GlobalSets{});
    EXPECT_EQ(document.deviceCounter + document.branchCounter + document.itemCounter, 0);
    EXPECT_THAT(editor.ListView1.rows(), IsEmpty());
    EXPECT_TRUE(editor.TreeView1.enabled && editor.ListView1State.enabled);

    editor.mnuSaveCfg_Click();
    EXPECT_THAT(desktop.messages(), ElementsAre(newFile + " saved")) << "there was no such file";
    EXPECT_THAT(registry.calls,
                ElementsAre(R"(Software\QUONAutomation\OPCOlvan|ConfigFile|)" + newFile));
    EXPECT_TRUE(document.saved);
}

TEST_F(LifecycleTest, DecliningToOverwriteTheDefaultFileLeadsToSaveAs) {
    disk.files[newFile] = "somebody else's";
    editor.mnuNewCfg_Click();
    desktop.willAnswer({no});
    desktop.willChoose(other);
    editor.mnuSaveCfg_Click();
    EXPECT_EQ(desktop.lastChooser, "Save configuration|configuration files |*.xml|" + newFile);
    EXPECT_EQ(disk.files[newFile], "somebody else's");
    EXPECT_EQ(document.currentPath(), other);
    document.tree().setText(*document.tree().root(), "/else/where.xml");
    editor.mnuSaveAs_Click();
    EXPECT_THAT(desktop.lastChooser, ::testing::EndsWith("|/else/OPCOlvan.xml"));
}

TEST_F(LifecycleTest, TheSessionMayEndUnlessTheUserWantedToSaveAndItFailed) {
    const auto mayEnd = [&](bool mayAsk) { return editor.mayEnd([=] { return mayAsk; }); };
    EXPECT_TRUE(mayEnd(true));
    editor.mnuNewCfg_Click();
    disk.files[newFile] = "somebody else's";
    EXPECT_TRUE(mayEnd(false));
    desktop.willAnswer({no});
    EXPECT_TRUE(mayEnd(true));
    desktop.willAnswer({Answer::yes, Answer::cancel});
    EXPECT_FALSE(mayEnd(true));
    EXPECT_TRUE(document.open && !document.saved);
    desktop.willAnswer({Answer::yes, Answer::yes});
    EXPECT_TRUE(mayEnd(true) && document.saved && mayEnd(true));
    EXPECT_EQ(desktop.answersLeft(), 0U);
}

TEST_F(LifecycleTest, OpenShowsTheConfigurationOfTheChosenFile) {
    std::vector<std::string> meanwhile;
    desktop.onPendingEvents = [&] {
        meanwhile.push_back(enabledNow());
        EXPECT_TRUE(editor.pnlImpStat.visible);
        EXPECT_EQ(editor.pnlImpStat.lblLabel, "Loading File ....");
    };
    constexpr int busItems = 65'536;
    std::string items;
    for (int i = 0; i < busItems; ++i)
        items += tag(std::to_string(i));
    open(house, configuration(plc("Plant", branch("F", items)) + plc("Annex")));

    EXPECT_EQ(desktop.lastChooser, "Open as existing configuration|configuration files |*.xml");
    EXPECT_THAT(meanwhile, ::testing::SizeIs(::testing::Ge(1)));
    EXPECT_THAT(meanwhile, ::testing::Each(enabledIn(commandStates::loading)));
    EXPECT_FALSE(editor.pnlImpStat.visible);
    EXPECT_EQ(editor.pnlImpStat.progress, 36) << "from 99 it goes on at 0";
    EXPECT_EQ(document.currentPath(), house);
    EXPECT_EQ(document.tree().selected(), document.tree().root());
    EXPECT_EQ(document.deviceCounter, 3);
    EXPECT_EQ(document.branchCounter, 2);
    EXPECT_EQ(document.itemCounter, busItems + 1) << "more than 16 bits hold";
    EXPECT_EQ(columns(), "Plc Name 0.5, Port 0.2, EDI Type 0.3");
    EXPECT_EQ(rows(), "Plant|COM2|PEI10x19200\nAnnex|COM2|PEI10x19200\n");
    EXPECT_TRUE(editor.TreeView1.enabled && editor.ListView1State.enabled);
}

TEST_F(LifecycleTest, OpenOfAFileThatIsNoConfigurationLeavesNoneOpen) {
    open(house, example);
    click("Plant");
    for (const std::string text : {"<project/>", "<QUONEibCfg>"}) {
        open(other, text);
        EXPECT_FALSE(document.open);
        EXPECT_EQ(document.currentPath(), other) << "the root tells which file it was";
        EXPECT_EQ(outline(document), "");
        expectTreeAndRegistriesAgree(document);
        EXPECT_FALSE(editor.pnlImpStat.visible);
        EXPECT_EQ(enabledNow(), enabledIn(commandStates::noConfiguration));
        EXPECT_FALSE(editor.TreeView1.enabled || editor.ListView1State.enabled);
        EXPECT_THAT(editor.ListView1.rows(), IsEmpty());
        editor.mnuSaveCfg_Click();
        EXPECT_EQ(disk.files[other], text) << "what is not there overwrites nothing";
    }
    EXPECT_THAT(desktop.messages(),
                ElementsAre("The configuration file is not valid.",
                            " Error n. 321  Line 1: no element found in ImportXML"));
}

}  // namespace
