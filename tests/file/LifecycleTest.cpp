#include "file/Lifecycle.h"

#include "support/EditorWorld.h"

namespace {

const std::string house = "/home/ann/house.xml";
const std::string other = "/home/ann/other.xml";
const std::string light = "Plant.Light1";
const std::string example = configuration(plc("Plant", tag("Light1")));

const std::string unreadable =
    "1 texts cannot be read back by the OPC server, the first in Plant.Light1. Save all the same? "
    "[No]";

const struct {
    const char* name;
    void (*plant)(EditorWorld&);
} faults[] = {
    {"nothing", [](EditorWorld& /*world*/) {}},
    {"chooser cancelled", [](auto& world) { world.desktop.chooserFault = ErrorNumber::cancelled; }},
    {"chooser fails",
     [](auto& world) { world.desktop.chooserFault = ErrorNumber::pathFileAccessError; }},
    {"out of memory", [](auto& world) { world.desktop.fails = true; }},
    {"read error", [](auto& world) { world.disk.readFault = ErrorNumber::permissionDenied; }},
    {"disk full", [](auto& world) { world.disk.writeFault = ErrorNumber::diskFull; }},
    {"registry fails", [](auto& world) { world.registry.fails = true; }},
    {"changed by another program", [](auto& world) { ++world.disk.time; }},
    {"unreadable text",
     [](auto& world) {
         if (!world.document.open) return;
         const bool saved = world.document.saved;
         world.disk.writesSpoiledFiles = true;
         world.document.setComment(world.document.tree().nodeAt(light), "a&b");
         world.document.saved = saved;
     }},
};

/// Runs the command. Returns false if the program must not end.
bool run(const std::string& command, EditorWorld& world) {
    world.dialogIsOpen = command == "mayEnd, dialog";
    if (command == "Form_Unload") return world.editor.Form_Unload();
    if (command == "mayEnd without asking") return world.editor.mayEnd([] { return false; });
    if (command.starts_with("mayEnd")) return world.editor.mayEnd([] { return true; });
    world.editor.run(commandNamed(command));
    return true;
}

/// Runs a command on a configuration in the file `house`, with a fault and these answers to its
/// questions, and checks the result. The chooser returns the existing file `other`.
void expectNothingIsLost(const std::string& command, const std::string& start,
                         const std::string& fault, void (*plant)(EditorWorld&),
                         std::array<Answer, 3> answers, std::set<std::string>& messages) {
    EditorWorld world;
    const Document& document = world.document;
    world.open(house, example);
    if (start == "unsaved") world.change();
    if (start == "closed") world.editor.mnuCloseCfg_Click();
    const std::string otherBefore = world.disk.files[other] = configuration(plc("Other"));
    world.desktop.willChoose(other);
    world.desktop.willAnswer({answers[0], answers[1], answers[2]});
    plant(world);
    const bool mayEnd = run(command, world);

    std::map<std::string, Answer> asked;
    std::string trace = command + ", " + start + ", " + fault;
    for (const std::string& message : world.desktop.messages()) {
        messages.insert(message);
        trace += "\n  " + message;
        if (message.find('?') == std::string::npos) continue;
        const Answer answer = answers.at(asked.size());
        trace += std::array{" yes", " no", " cancel"}.at(static_cast<std::size_t>(answer));
        asked[message.starts_with("Do you") ? "save" : message] = answer;
    }
    SCOPED_TRACE(trace);
    const bool isSave = command.starts_with("mnuSave");
    const bool wantsSaving = asked.contains("save") ? asked["save"] == Answer::yes : isSave;
    const bool wroteHouse = world.disk.files[house] != example;
    const bool wroteOther = world.disk.files[other] != otherBefore;
    const bool isKept = document.open && outline(document) == "Plant[Light1]";

    // Unsaved work is never lost without a question, and only unsaved work causes one.
    EXPECT_EQ(asked.contains("save"), start == "unsaved" && !isSave && fault != "out of memory" &&
                                          command != "mayEnd without asking");
    const bool endsProgram = command == "mnuExit" || command == "Form_Unload";
    const bool isWritten = wroteHouse || wroteOther;
    const bool isDiscarded =
        endsProgram || (asked.contains("save") && asked["save"] != Answer::yes);
    EXPECT_TRUE(start != "unsaved" || isKept || isWritten || isDiscarded);
    EXPECT_TRUE(start != "unsaved" || !isKept || document.saved == isWritten);
    // Only a wanted file is written, and completely. No error destroys the old file.
    EXPECT_TRUE(wantsSaving || !isWritten);
    EXPECT_FALSE(isWritten && (start == "closed" || fault == "disk full"));
    for (const auto& [question, answer] : asked)
        EXPECT_TRUE(question == "save" || answer == Answer::yes || !wroteHouse);
    for (const auto& [path, wrote] : {std::pair(house, wroteHouse), {other, wroteOther}}) {
        const std::string& text = world.disk.files[path];
        EXPECT_TRUE(!wrote || (text.find("Light1") != std::string::npos &&
                               text.ends_with("</QUONEibCfg>\r\n")));
    }
    // Unreadable texts are saved only after a question. No selects the first one.
    EXPECT_TRUE(fault != "unreadable text" || !isWritten || asked.contains(unreadable));
    const bool isDeclined = asked.contains(unreadable) && asked[unreadable] != Answer::yes;
    const bool isShown = isDeclined && !world.dialogIsOpen;
    EXPECT_TRUE(!isDeclined || (isKept && !isWritten && document.saved == (start == "saved")));
    EXPECT_EQ(document.open && document.tree().selected()->key() == light, isShown);
    // The registry has the path of the saved file.
    std::string recorded, written;
    for (const std::string& call : world.registry.calls)
        recorded += call.substr(call.rfind('|'));
    if (wroteHouse) written += "|" + house;
    if (wroteOther) written += "|" + other;
    EXPECT_EQ(recorded, fault == "registry fails" ? "" : written);
    // After an error the program goes on with the unsaved work.
    const bool failed = trace.find(" Error n. ") != std::string::npos;
    EXPECT_EQ(world.applicationEnded, endsProgram && !failed && !isDeclined);
    EXPECT_FALSE(failed && start == "unsaved" && !isKept);
    const bool isAsking = command == "mayEnd" || command == "mayEnd, dialog";
    EXPECT_EQ(mayEnd, command == "Form_Unload" ? world.applicationEnded
                      : isAsking               ? !failed && (!wantsSaving || isWritten)
                                               : true);
    // Views and commands follow the state.
    EXPECT_EQ(world.editor.TreeView1.visible, document.open);
    EXPECT_EQ(world.editor.ListView1State.visible, document.open);
    EXPECT_TRUE(world.applicationEnded ||
                stateNameOf(world.enabledNow()) == (isShown         ? "item"
                                                    : document.open ? "configuration open"
                                                                    : "no configuration"));
    EXPECT_EQ(world.desktop.pointer, Pointer::normal);
    expectTreeAndRegistriesAgree(document);
}

/// One question for each change by another program.
TEST(Lifecycle, AsksAgainWhenTheFileChangesWhileAQuestionIsOpen) {
    const std::tuple<int, int, const char*> cases[] = {{0, 0, "o"},  {0, 1, "oc"},  {0, 2, "occ"},
                                                       {1, 0, "co"}, {1, 1, "cco"}, {1, 2, "ccco"}};
    for (const auto& [before, meanwhile, asked] : cases) {
        EditorWorld world;
        world.open(house, example);
        world.disk.time += before;
        int remaining = meanwhile;
        world.desktop.whileOpen = [&] { world.disk.time += remaining-- > 0 ? 1 : 0; };
        world.desktop.willAnswer({Answer::yes, Answer::yes, Answer::yes, Answer::yes});
        world.editor.mnuSaveCfg_Click();
        std::string seen;  // "o": overwrite? "c": changed
        for (const std::string& message : world.desktop.messages())
            seen += message.ends_with("Overwrite?") ? "o" : message.ends_with("[No]") ? "c" : "";
        EXPECT_EQ(seen, asked);
    }
}

TEST(Lifecycle, NeverLosesWorkOrFiles) {
    using enum Answer;
    std::set<std::string> messages;
    for (const char* command :
         {"mnuNewCfg", "mnuOpenCfg", "mnuImpCfg", "mnuCloseCfg", "mnuSaveCfg", "mnuSaveAs",
          "mnuExit", "Form_Unload", "mayEnd", "mayEnd, dialog", "mayEnd without asking"})
        for (const char* start : {"unsaved", "saved", "closed"})
            for (const auto& [name, plant] : faults)
                for (const Answer first : {yes, no, cancel})
                    for (const Answer second : {yes, no, cancel})
                        for (const Answer third : {yes, no, cancel})
                            if (!::testing::Test::HasFailure())
                                expectNothingIsLost(command, start, name, plant,
                                                    {first, second, third}, messages);
    std::set<std::string> expected{
        unreadable,
        "Do you want to save active configuration?",
        "Do you want to save this configuration?",
        "File /home/ann/house.xml already existing. Overwrite?",
        "/home/ann/house.xml saved",
        "File /home/ann/house.xml was changed by another program since it was last read or saved "
        "here. Go on with saving? [No]",
        " Error n. 61  Disk full in CreateXML",
        " Error n. 70  Permission denied in ImportXML",
        " Error n. 75  Path/File access error in mnuSaveAs_Click",
        "ShowDialImport Error n. 75  Path/File access error",
        "ShowDialSave Error n. 75  Path/File access error",
        "This file is not in ETS2 or ETS3 Esf format."};
    for (const char* routine :
         {"Form_Unload", "mnuCloseCfg_Click", "mnuExit_Click", "mnuImpCfg_Click", "mnuNewCfg_Click",
          "mnuOpenCfg_Click", "mnuSaveCfg_Click"})
        expected.insert(std::string(" Error n. 7  Out of memory in ") + routine);
    EXPECT_EQ(messages, expected);
}

}  // namespace
