#include "editor/Commands.h"

#include <algorithm>
#include <initializer_list>

#include "base/RunTimeError.h"
#include "editor/frmEditing.h"

namespace {

using Kind = Command::Kind;
using Group = CommandGroup;
using Form = frmEditing;

constexpr Command menu(std::string_view name, std::string_view caption, Group group) {
    return {.kind = Kind::menu, .name = name, .caption = caption, .group = group};
}

constexpr Command separator(std::string_view name) {
    return {.kind = Kind::separator, .name = name, .caption = {}};
}

// clang-format off
constexpr std::array table{
    menu("mnuFile", "&File", Group::byRule),
    Command{.name = "mnuNewCfg", .caption = "&New Configuration", .group = Group::fileOpen,
            .toolbarKey = "new", .toolbarPlace = 0, .tooltip = "new config", .picture = "new",
            .handler = &Form::mnuNewCfg_Click},
    Command{.name = "mnuOpenCfg", .caption = "&Open Configuration", .group = Group::fileOpen,
            .toolbarKey = "open", .toolbarPlace = 1, .tooltip = "open config", .picture = "open",
            .handler = &Form::mnuOpenCfg_Click},
    separator("mnunull1"),
    Command{.name = "mnuSaveCfg", .caption = "&Save Configuration", .group = Group::fileSave,
            .toolbarKey = "save", .toolbarPlace = 2, .tooltip = "save config", .picture = "save",
            .handler = &Form::mnuSaveCfg_Click},
    Command{.name = "mnuSaveAs", .caption = "Save Configuration &As", .group = Group::fileSave,
            .handler = &Form::mnuSaveAs_Click},
    separator("mnunull6"),
    Command{.name = "mnuImpCfg", .caption = "Import from ETS", .group = Group::fileOpen,
            .handler = &Form::mnuImpCfg_Click},
    separator("mnunull2"),
    Command{.name = "mnuCloseCfg", .caption = "&Close Configuration", .group = Group::fileSave,
            .toolbarKey = "close", .toolbarPlace = 3, .tooltip = "close config",
            .picture = "close", .handler = &Form::mnuCloseCfg_Click},
    Command{.name = "mnuExit", .caption = "E&xit", .group = Group::always,
            .toolbarKey = "exit", .toolbarPlace = 19, .tooltip = "exit", .picture = "exit",
            .handler = &Form::mnuExit_Click},

    menu("mnuObjects", "&Objects", Group::byRule),
    Command{.name = "mnuSetts", .caption = "&Global Settings", .group = Group::settings,
            .shortcut = "Ctrl+G", .toolbarKey = "setts", .toolbarPlace = 4,
            .tooltip = "global settings", .picture = "setts",
            .handler = &Form::mnuSetts_Click},
    separator("mnunull5"),
    Command{.name = "mnuAddPlc", .caption = "Add &Object", .group = Group::addDevice,
            .shortcut = "Ctrl+P", .toolbarKey = "plc", .toolbarPlace = 5,
            .tooltip = "add Object", .picture = "plc",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuAddPlc_Click},
    Command{.name = "mnuAddBranch", .caption = "Add &Branch", .group = Group::addBranch,
            .shortcut = "Ctrl+B", .toolbarKey = "branch", .toolbarPlace = 6,
            .tooltip = "add Branch", .picture = "branch",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuAddBranch_Click},
    Command{.name = "mnuAddItem", .caption = "Add &Item", .group = Group::addItem,
            .shortcut = "Ctrl+I", .toolbarKey = "item", .toolbarPlace = 7,
            .tooltip = "add Item", .picture = "item",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuAddItem_Click},

    menu("mnuEdit", "&Edit", Group::byRule),
    Command{.name = "mnuCopy", .caption = "&Copy", .group = Group::copy, .shortcut = "Ctrl+C",
            .toolbarKey = "copy", .toolbarPlace = 8, .tooltip = "copy", .picture = "copy",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuCopy_Click},
    Command{.name = "mnuCut", .caption = "Cu&t", .group = Group::cut, .shortcut = "Ctrl+X",
            .toolbarKey = "cut", .toolbarPlace = 9, .tooltip = "cut", .picture = "cut",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuCut_Click},
    Command{.name = "mnuPaste", .caption = "&Paste", .group = Group::paste, .shortcut = "Ctrl+V",
            .toolbarKey = "paste", .toolbarPlace = 10, .tooltip = "paste", .picture = "paste",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuPaste_Click},
    Command{.name = "mnuDelete", .caption = "&Delete Object", .group = Group::remove,
            .shortcut = "Del", .toolbarKey = "delete", .toolbarPlace = 11, .tooltip = "delete",
            .picture = "delete",
            .contextMenus = ContextMenus::both,
            .handler = &Form::mnuDelete_Click},
    separator("mnunull4"),
    Command{.name = "mnuPasteName", .caption = "Paste Item names from Clipboard",
            .group = Group::pasteNames, .toolbarKey = "pastitem", .toolbarPlace = 17,
            .tooltip = "Replace Item Name", .picture = "pastename",
            .contextMenus = ContextMenus::list,
            .handler = &Form::mnuPasteName_Click},
    Command{.name = "mnuPasteComment", .caption = "Paste Item comments from Clipboard",
            .group = Group::pasteComments, .toolbarKey = "pastcomment", .toolbarPlace = 18,
            .tooltip = "Replace Item Comment", .picture = "pastecomment",
            .contextMenus = ContextMenus::list,
            .handler = &Form::mnuPasteComment_Click},

    menu("mnuView", "&View", Group::view),
    Command{.name = "mnuIcon", .caption = "&Icon", .group = Group::view, .toolbarKey = "icon",
            .toolbarPlace = 12, .tooltip = "view icon", .picture = "icon",
            .view = ListView::View::icon,
            .handler = &Form::mnuIcon_Click},
    Command{.name = "mnuSmallIcon", .caption = "&SmallIcon", .group = Group::view,
            .toolbarKey = "smallicon", .toolbarPlace = 13, .tooltip = "view smallicon",
            .picture = "smallicon", .view = ListView::View::smallIcon,
            .handler = &Form::mnuSmallIcon_Click},
    Command{.name = "mnuList", .caption = "&List", .group = Group::view, .toolbarKey = "list",
            .toolbarPlace = 14, .tooltip = "view list", .picture = "list",
            .view = ListView::View::list,
            .handler = &Form::mnuList_Click},
    Command{.name = "mnuReport", .caption = "&Report", .group = Group::view,
            .toolbarKey = "report", .toolbarPlace = 15, .tooltip = "view report",
            .picture = "report", .view = ListView::View::report,
            .handler = &Form::mnuReport_Click},

    menu("mnuTools", "&Tools", Group::find),
    Command{.name = "mnuFind", .caption = "&Find", .group = Group::find, .toolbarKey = "find",
            .toolbarPlace = 16, .picture = "find",
            .handler = &Form::mnuFind_Click},

    Command{.kind = Kind::menu, .name = "mnuAbout", .caption = "&About",
            .handler = &Form::mnuAbout_Click},

    Command{.kind = Kind::inContextMenus, .name = "mnuUndo", .caption = "&Undo",
            .shortcut = "Ctrl+Z", .handler = &Form::mnuUndo_Click},
    Command{.kind = Kind::inContextMenus, .name = "mnuRedo", .caption = "R&edo",
            .shortcut = "Ctrl+Y; Ctrl+Shift+Z", .handler = &Form::mnuRedo_Click},
};
// clang-format on

constexpr std::size_t toolbarLength = 20;

constexpr CommandState groups(std::initializer_list<int> positionsFromOne) {
    CommandState state{};
    for (const int position : positionsFromOne)
        state.at(static_cast<std::size_t>(position - 1)) = true;
    return state;
}

bool isOn(const CommandState& state, Group group) {
    return state.at(static_cast<std::size_t>(group));
}

bool anyOn(const CommandState& state, std::initializer_list<Group> of) {
    return std::ranges::any_of(of, [&](Group group) { return isOn(state, group); });
}

}  // namespace

namespace commandStates {
// By the groups' positions in EnMenuButt. The odd ones are meant: a device's row in the list
// does not enable delete, and paste stays on at the root, where it then refuses.
const CommandState noConfiguration = groups({1});
const CommandState loading = groups({});
const CommandState configurationOpen = groups({1, 2, 3, 6, 12});
const CommandState rootSelected = groups({1, 2, 3, 6, 9, 11, 12});
const CommandState containerSelected = groups({1, 2, 3, 4, 5, 9, 10, 11, 12});
const CommandState containerSelectedItemsListed = groups({1, 2, 3, 4, 5, 9, 10, 11, 12, 13, 14});
const CommandState itemSelected = groups({1, 2, 3, 7, 8, 10, 11, 12, 13, 14});
const CommandState deviceRowSelected = groups({1, 2, 3, 4, 5, 9, 11, 12});
const CommandState branchRowSelected = groups({1, 2, 3, 4, 5, 9, 10, 11, 12});
const CommandState itemRowSelected = groups({1, 2, 3, 7, 8, 10, 11, 12, 13, 14});
}  // namespace commandStates

std::span<const Command> commandTable() { return table; }

const Command& commandNamed(std::string_view name) {
    const auto* const row = std::ranges::find(table, name, &Command::name);
    if (row == table.end()) throw RunTimeError(ErrorNumber::elementNotFound);
    return *row;
}

std::span<const Command* const> toolbarCommands() {
    static const auto buttons = [] {
        std::array<const Command*, toolbarLength> places{};
        for (const Command& command : table)
            if (command.toolbarPlace >= 0) {
                places.at(static_cast<std::size_t>(command.toolbarPlace)) = &command;
            }
        return places;
    }();
    return buttons;
}

bool isEnabledIn(const CommandState& state, const Command& command) {
    switch (command.group) {
        case Group::always: return true;
        case Group::byRule: break;
        default: return isOn(state, command.group);
    }
    if (command.name == "mnuFile") return anyOn(state, {Group::fileOpen, Group::fileSave});
    // Delete stands in the Edit menu, but counts for the Objects menu; that is meant.
    if (command.name == "mnuObjects") {
        return anyOn(state, {Group::settings, Group::addBranch, Group::addItem, Group::addDevice,
                             Group::remove});
    }
    return anyOn(state, {Group::copy, Group::cut, Group::paste});  // mnuEdit
}
