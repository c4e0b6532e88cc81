#include "editor/Commands.h"

#include <gtest/gtest.h>

#include <sstream>

#include "base/RunTimeError.h"

namespace {

// Name; groups of which each alone enables it, counted from 1; caption, visible and hidden
// shortcuts; key, tooltip and picture of the button.
constexpr auto commands = R"(mnuFile|1,2|&File|||||
mnuNewCfg|1|&New Configuration||Ctrl+N|new|new config|new
mnuOpenCfg|1|&Open Configuration||Ctrl+O|open|open config|open
--
mnuSaveCfg|2|&Save Configuration||Ctrl+S|save|save config|save
mnuSaveAs|2|Save Configuration &As||Ctrl+Shift+S|||
--
mnuImpCfg|1|Import from ETS|||||
--
mnuCloseCfg|2|&Close Configuration|||close|close config|close
mnuExit|always|E&xit|||exit|exit|exit
mnuObjects|3,4,5,6,10|&Objects|||||
mnuSetts|3|&Global Settings|Ctrl+G||setts|global settings|setts
--
mnuAddPlc|6|Add &Object|Ctrl+P||plc|add Object|plc
mnuAddBranch|4|Add &Branch|Ctrl+B||branch|add Branch|branch
mnuAddItem|5|Add &Item|Ctrl+I||item|add Item|item
mnuEdit|7,8,9|&Edit|||||
mnuCopy|7|&Copy|Ctrl+C||copy|copy|copy
mnuCut|8|Cu&t|Ctrl+X||cut|cut|cut
mnuPaste|9|&Paste|Ctrl+V||paste|paste|paste
mnuDelete|10|&Delete Object|Del||delete|delete|delete
--
mnuPasteName|13|Paste Item names from Clipboard|||pastitem|Replace Item Name|pastename
mnuPasteComment|14|Paste Item comments from Clipboard|||pastcomment|Replace Item Comment|pastecomment
mnuView|11|&View|||||
mnuIcon|11|&Icon|||icon|view icon|icon
mnuSmallIcon|11|&SmallIcon|||smallicon|view smallicon|smallicon
mnuList|11|&List|||list|view list|list
mnuReport|11|&Report|||report|view report|report
mnuTools|12|&Tools|||||
mnuFind|12|&Find||Ctrl+F|find||find
mnuAbout|always|&About|||||
mnuUndo|always|&Undo|Ctrl+Z||||
mnuRedo|always|R&edo|Ctrl+Y; Ctrl+Shift+Z||||
mnuProperties|always|P&roperties|||||
mnuItemProperties|always|Properties o&f Several Items...|||||
mnuCopyTable|always|Copy &as Table|||||
)";
constexpr auto toolbar =
    "mnuNewCfg mnuOpenCfg mnuSaveCfg mnuCloseCfg|mnuSetts|mnuAddPlc mnuAddBranch mnuAddItem|"
    "mnuCopy mnuCut mnuPaste mnuDelete|mnuIcon mnuSmallIcon mnuList mnuReport|mnuFind|"
    "mnuPasteName mnuPasteComment|mnuExit";
constexpr auto contextMenu =
    "mnuUndo mnuRedo|mnuProperties mnuItemProperties|mnuAddPlc mnuAddBranch mnuAddItem|"
    "mnuCopy mnuCut mnuPaste mnuDelete|mnuPasteName mnuPasteComment mnuCopyTable";

/// The numbers of the groups for which `isOn` returns true, e.g. "1,2".
template <typename IsOn>
std::string numbersOf(const IsOn& isOn) {
    std::string numbers;
    for (std::size_t group = 0; group < commandGroupCount; ++group)
        if (isOn(group)) numbers += (numbers.empty() ? "" : ",") + std::to_string(group + 1);
    return numbers;
}

std::string rowOf(const Command& command) {
    if (command.kind == Command::Kind::separator) return "--";
    std::string row(command.name);
    row += isEnabledIn({}, command) ? "|always" : "|" + numbersOf([&](std::size_t group) {
                                                      CommandState only{};
                                                      only.at(group) = true;
                                                      return isEnabledIn(only, command);
                                                  });
    const ToolbarButton& button = command.button;
    for (const auto text : {command.caption, command.shortcut, command.hiddenShortcut, button.key,
                            button.tooltip, button.picture})
        row.append("|").append(text);
    return row;
}

/// The names of the commands, with "|" between groups.
template <typename GroupOf>
std::string inGroups(std::span<const Command* const> shown, const GroupOf& groupOf) {
    std::string names(shown.front()->name);
    for (std::size_t i = 1; i < shown.size(); ++i)
        names.append(groupOf(shown[i]) == groupOf(shown[i - 1]) ? " " : "|").append(shown[i]->name);
    return names;
}

TEST(Commands, HaveTheirCaptionsKeysButtonsAndPlaces) {
    std::istringstream rows(commands);
    for (const Command& command : commandTable()) {
        std::string expected;
        std::getline(rows, expected);
        ASSERT_EQ(expected, rowOf(command)) << "the command " << command.name;
    }
    EXPECT_EQ(inGroups(toolbarCommands(), [](auto* it) { return it->button.group; }), toolbar);
    EXPECT_EQ(inGroups(contextCommands(), [](auto* it) { return it->context.group; }), contextMenu);
    EXPECT_THROW(commandNamed("mnuNone"), RunTimeError);
}

TEST(Commands, AreEnabledInTheirStates) {
    using namespace commandStates;
    const std::tuple<const char*, const CommandState&, const char*> states[] = {
        {"no configuration", noConfiguration, "1"},
        {"loading", loading, ""},
        {"configuration open", configurationOpen, "1,2,3,6,12"},
        {"root", rootSelected, "1,2,3,6,9,11,12"},
        {"container", containerSelected, "1,2,3,4,5,9,10,11,12"},
        {"items listed", containerSelectedItemsListed, "1,2,3,4,5,9,10,11,12,13,14"},
        {"item", itemSelected, "1,2,3,7,8,10,11,12,13,14"},
        {"row of a device", deviceRowSelected, "1,2,3,4,5,9,11,12"},
        {"row of a branch", branchRowSelected, "1,2,3,4,5,9,10,11,12"},
        {"row of an item", itemRowSelected, "1,2,3,7,8,10,11,12,13,14"}};
    for (const auto& [name, state, groups] : states) {
        const auto enabled = numbersOf([&on = state](std::size_t group) { return on.at(group); });
        EXPECT_EQ(enabled, groups) << "in the state: " << name;
    }
}

}  // namespace
