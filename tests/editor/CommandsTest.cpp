#include "editor/Commands.h"

#include <gtest/gtest.h>

#include <set>

#include "base/RunTimeError.h"

namespace {

// Group, name, caption, visible and hidden shortcuts; key, tooltip and picture of the button.
constexpr auto commands = R"(
- mnuFile|&File|||||
1 mnuNewCfg|&New Configuration||Ctrl+N|new|new config|new
1 mnuOpenCfg|&Open Configuration||Ctrl+O|open|open config|open
--
2 mnuSaveCfg|&Save Configuration||Ctrl+S|save|save config|save
2 mnuSaveAs|Save Configuration &As||Ctrl+Shift+S|||
--
1 mnuImpCfg|Import from ETS|||||
--
2 mnuCloseCfg|&Close Configuration|||close|close config|close
0 mnuExit|E&xit|||exit|exit|exit
- mnuObjects|&Objects|||||
3 mnuSetts|&Global Settings|Ctrl+G||setts|global settings|setts
--
6 mnuAddPlc|Add &Object|Ctrl+P||plc|add Object|plc
4 mnuAddBranch|Add &Branch|Ctrl+B||branch|add Branch|branch
5 mnuAddItem|Add &Item|Ctrl+I||item|add Item|item
- mnuEdit|&Edit|||||
7 mnuCopy|&Copy|Ctrl+C||copy|copy|copy
8 mnuCut|Cu&t|Ctrl+X||cut|cut|cut
9 mnuPaste|&Paste|Ctrl+V||paste|paste|paste
10 mnuDelete|&Delete Object|Del||delete|delete|delete
--
13 mnuPasteName|Paste Item names from Clipboard|||pastitem|Replace Item Name|pastename
14 mnuPasteComment|Paste Item comments from Clipboard|||pastcomment|Replace Item Comment|pastecomment
11 mnuView|&View|||||
11 mnuIcon|&Icon|||icon|view icon|icon
11 mnuSmallIcon|&SmallIcon|||smallicon|view smallicon|smallicon
11 mnuList|&List|||list|view list|list
11 mnuReport|&Report|||report|view report|report
12 mnuTools|&Tools|||||
12 mnuFind|&Find||Ctrl+F|find||find
0 mnuAbout|&About|||||
0 mnuUndo|&Undo|Ctrl+Z||||
0 mnuRedo|R&edo|Ctrl+Y; Ctrl+Shift+Z||||
0 mnuProperties|P&roperties|||||
0 mnuItemProperties|Properties o&f Several Items...|||||
0 mnuCopyTable|Copy &as Table|||||
)";
constexpr auto toolbar =
    "new open save close|setts|plc branch item|copy cut paste delete|"
    "icon smallicon list report|find|pastitem pastcomment|exit";
constexpr auto contextMenu =
    "mnuUndo mnuRedo|mnuProperties mnuItemProperties|mnuAddPlc mnuAddBranch mnuAddItem|"
    "mnuCopy mnuCut mnuPaste mnuDelete|mnuPasteName mnuPasteComment mnuCopyTable";

/// The names of the commands, with "|" between groups.
template <typename GroupOf, typename NameOf>
std::string inGroups(std::span<const Command* const> rows, GroupOf groupOf, NameOf nameOf) {
    std::string line;
    for (const Command* before = nullptr; const Command* command : rows) {
        const bool begins = before != nullptr && groupOf(*before) != groupOf(*command);
        line.append(before == nullptr ? "" : begins ? "|" : " ").append(nameOf(*command));
        before = command;
    }
    return line;
}

TEST(Commands, MenusToolbarAndStatesFollowTheTable) {
    using namespace commandStates;
    std::string all = "\n";
    for (const Command& it : commandTable()) {
        if (it.kind == Command::Kind::separator) {
            all += "--\n";
            continue;
        }
        const std::string group = it.group == CommandGroup::byRule ? "-"
                                  : it.group == CommandGroup::always
                                      ? "0"
                                      : std::to_string(static_cast<int>(it.group) + 1);
        all.append(group).append(" ");
        for (const auto text : {it.name, it.caption, it.shortcut, it.hiddenShortcut, it.button.key,
                                it.button.tooltip, it.button.picture})
            all.append(text).append("|");
        all.back() = '\n';
    }
    EXPECT_EQ(all, commands);

    EXPECT_EQ(toolbar, inGroups(
                           toolbarCommands(), [](const Command& it) { return it.button.group; },
                           [](const Command& it) { return it.button.key; }));
    EXPECT_EQ(contextMenu,
              inGroups(
                  contextCommands(), [](const Command& it) { return it.context.group; },
                  [](const Command& it) { return it.name; }));

    const std::vector<std::pair<const CommandState&, std::set<int>>> states{
        {noConfiguration, {1}},
        {loading, {}},
        {configurationOpen, {1, 2, 3, 6, 12}},
        {rootSelected, {1, 2, 3, 6, 9, 11, 12}},
        {containerSelected, {1, 2, 3, 4, 5, 9, 10, 11, 12}},
        {containerSelectedItemsListed, {1, 2, 3, 4, 5, 9, 10, 11, 12, 13, 14}},
        {itemSelected, {1, 2, 3, 7, 8, 10, 11, 12, 13, 14}},
        {deviceRowSelected, {1, 2, 3, 4, 5, 9, 11, 12}},
        {branchRowSelected, {1, 2, 3, 4, 5, 9, 10, 11, 12}},
        {itemRowSelected, {1, 2, 3, 7, 8, 10, 11, 12, 13, 14}}};
    for (const auto& [state, groups] : states)
        for (int group = 1; group <= 14; ++group)
            EXPECT_EQ(state.at(static_cast<std::size_t>(group) - 1), groups.contains(group))
                << "group " << group << " in the state of " << ::testing::PrintToString(groups);
    for (std::size_t group = 0; group < 14; ++group) {
        CommandState only{};
        only.at(group) = true;
        const auto isOn = [&](const char* name) { return isEnabledIn(only, commandNamed(name)); };
        EXPECT_EQ(isOn("mnuFile"), group < 2) << group;
        EXPECT_EQ(isOn("mnuObjects"), (2 <= group && group < 6) || group == 9) << group;
        EXPECT_EQ(isOn("mnuEdit"), 6 <= group && group < 9) << group;
        EXPECT_TRUE(isOn("mnuExit") && isOn("mnuAbout"));
        for (const Command& each : commandTable()) {
            const bool isIn = static_cast<std::size_t>(each.group) == group;
            EXPECT_TRUE(each.group >= CommandGroup::always || isEnabledIn(only, each) == isIn);
        }
    }
    EXPECT_THROW(commandNamed("mnuNone"), RunTimeError);
}

}  // namespace
