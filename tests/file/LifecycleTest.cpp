#include "file/Lifecycle.h"

#include <array>
#include <fstream>
#include <iterator>
#include <map>

#include "support/EditorWorld.h"

namespace {

const std::string house = "/home/ann/house.xml";
const std::string other = "/home/ann/other.xml";
const std::string example = configuration(plc("Plant", tag("Light1")));

const struct {
    const char* name;
    void (*plant)(EditorWorld&);
} faults[] = {
    {"nothing", [](EditorWorld& /*world*/) {}},
    {"no choice", [](auto& world) { world.desktop.chooserFault = ErrorNumber::cancelled; }},
    {"no chooser",
     [](auto& world) { world.desktop.chooserFault = ErrorNumber::pathFileAccessError; }},
    {"no memory", [](auto& world) { world.desktop.fails = true; }},
    {"no reading", [](auto& world) { world.disk.readFault = ErrorNumber::permissionDenied; }},
    {"no writing", [](auto& world) { world.disk.writeFault = ErrorNumber::diskFull; }},
    {"no record", [](auto& world) { world.registry.fails = true; }},
    {"another's change", [](auto& world) { ++world.disk.time; }},
};

/// Runs the command; false when the program must not end.
bool run(const std::string& command, frmEditing& editor) {
    if (command == "Form_Unload") return editor.Form_Unload();
    if (command == "mayEnd") return editor.mayEnd([] { return true; });
    if (command == "mayEnd unasked") return editor.mayEnd([] { return false; });
    editor.run(commandNamed(command));
    return true;
}

/// "Plant[Light1], unsaved, wrote house, recorded house, ended".
std::string stateOf(EditorWorld& world) {
    const Document& document = world.document;
    std::string state = outline(document);
    state += !document.open ? ", closed" : document.saved ? ", saved" : ", unsaved";
    if (world.disk.files[house] != example) state += ", wrote house";
    if (world.disk.files[other].starts_with("<?xml")) state += ", wrote other";
    for (const auto& call : world.registry.calls)
        state += call.ends_with(house) ? ", recorded house" : ", recorded other";
    return state + (world.applicationEnded ? ", ended" : "");
}

/// What a command comes to, from a configuration in the file `house`, with these answers to its
/// questions. The chooser gives the file `other`, which exists.
std::string way(const std::string& command, const std::string& start, void (*plant)(EditorWorld&),
                std::array<Answer, 3> answers) {
    EditorWorld world;
    world.open(house, example);
    if (start == "unsaved") world.change();
    if (start == "closed") world.editor.mnuCloseCfg_Click();
    world.disk.files[other] = configuration(plc("Other"));
    world.desktop.willChoose(other);
    world.desktop.willAnswer({answers[0], answers[1], answers[2]});
    plant(world);

    const bool mayEnd = run(command, world.editor);
    std::string told = "> " + command + ", " + start + "\n";
    std::size_t asked = 0;
    for (const std::string& message : world.desktop.messages()) {
        told += "  " + message;
        constexpr std::array words{" yes", " no", " cancel"};
        if (message.ends_with("?")) told += words.at(static_cast<std::size_t>(answers.at(asked++)));
        told += "\n";
    }
    told += "  = " + stateOf(world) + (mayEnd ? "" : ", may not end") + "\n";

    EXPECT_EQ(asked + world.desktop.answersLeft(), answers.size()) << told;
    EXPECT_EQ(world.editor.TreeView1.visible, world.document.open) << told;
    EXPECT_EQ(world.editor.ListView1State.visible, world.document.open) << told;
    EXPECT_TRUE(world.applicationEnded ||
                world.enabledNow() == enabledIn(world.document.open
                                                    ? commandStates::configurationOpen
                                                    : commandStates::noConfiguration))
        << told;
    EXPECT_EQ(world.desktop.pointer, Pointer::normal) << told;
    expectTreeAndRegistriesAgree(world.document);
    return told;
}

/// Every way through every command, as a person has approved it: under each stands what may be
/// wrong then. Run with APPROVE set, it writes them anew.
TEST(Lifecycle, AsksAndSavesAndStopsAsTheUserSays) {
    using enum Answer;
    std::map<std::string, std::set<std::string>> ways;
    for (const char* command : {"mnuNewCfg", "mnuOpenCfg", "mnuImpCfg", "mnuCloseCfg", "mnuSaveCfg",
                                "mnuSaveAs", "mnuExit", "Form_Unload", "mayEnd", "mayEnd unasked"})
        for (const char* start : {"unsaved", "saved", "closed"})
            for (const auto& [name, plant] : faults)
                for (const Answer first : {yes, no, cancel})
                    for (const Answer second : {yes, no, cancel})
                        for (const Answer third : {yes, no, cancel})
                            ways[way(command, start, plant, {first, second, third})].insert(name);
    std::string told;
    for (const auto& [text, names] : ways) {
        told += text;
        if (names.size() < std::size(faults))
            told += "  when: " + ::testing::PrintToString(names) + "\n";
    }
    const char* const path = TESTS_DIR "/file/lifecycle-ways.txt";
    if (std::getenv("APPROVE") != nullptr) std::ofstream(path) << told;
    std::ifstream approved(path);
    EXPECT_EQ(told, std::string(std::istreambuf_iterator<char>(approved), {}));
}

}  // namespace
