#include "editor/Commands.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "base/RunTimeError.h"
#include "editor/frmEditing.h"

namespace {

using Kind = Command::Kind;
using Group = CommandGroup;
using Form = frmEditing;
using Bar = ToolbarButton::Group;
using Context = ContextEntry::Group;
using Views = ContextEntry::Views;

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
            .hiddenShortcut = "Ctrl+N", .desktopKey = DesktopKey::newFile,
            .button = {Bar::file, "new", "new config", "new"},
            .handler = &Form::mnuNewCfg_Click},
    Command{.name = "mnuOpenCfg", .caption = "&Open Configuration", .group = Group::fileOpen,
            .hiddenShortcut = "Ctrl+O", .desktopKey = DesktopKey::open,
            .button = {Bar::file, "open", "open config", "open"},
            .handler = &Form::mnuOpenCfg_Click},
    separator("mnunull1"),
    Command{.name = "mnuSaveCfg", .caption = "&Save Configuration", .group = Group::fileSave,
            .hiddenShortcut = "Ctrl+S", .desktopKey = DesktopKey::save,
            .button = {Bar::file, "save", "save config", "save"},
            .handler = &Form::mnuSaveCfg_Click},
    Command{.name = "mnuSaveAs", .caption = "Save Configuration &As", .group = Group::fileSave,
            .hiddenShortcut = "Ctrl+Shift+S", .desktopKey = DesktopKey::saveAs,
            .handler = &Form::mnuSaveAs_Click},
    separator("mnunull6"),
    Command{.name = "mnuImpCfg", .caption = "Import from ETS", .group = Group::fileOpen,
            .handler = &Form::mnuImpCfg_Click},
    separator("mnunull2"),
    Command{.name = "mnuCloseCfg", .caption = "&Close Configuration", .group = Group::fileSave,
            .button = {Bar::file, "close", "close config", "close"},
            .handler = &Form::mnuCloseCfg_Click},
    Command{.name = "mnuExit", .caption = "E&xit", .group = Group::always,
            .button = {Bar::exit, "exit", "exit", "exit"}, .handler = &Form::mnuExit_Click},

    menu("mnuObjects", "&Objects", Group::byRule),
    Command{.name = "mnuSetts", .caption = "&Global Settings", .group = Group::settings,
            .shortcut = "Ctrl+G", .button = {Bar::settings, "setts", "global settings", "setts"},
            .handler = &Form::mnuSetts_Click},
    separator("mnunull5"),
    Command{.name = "mnuAddPlc", .caption = "Add &Object", .group = Group::addDevice,
            .shortcut = "Ctrl+P", .button = {Bar::add, "plc", "add Object", "plc"},
            .context = {Context::add, Views::both}, .handler = &Form::mnuAddPlc_Click},
    Command{.name = "mnuAddBranch", .caption = "Add &Branch", .group = Group::addBranch,
            .shortcut = "Ctrl+B", .button = {Bar::add, "branch", "add Branch", "branch"},
            .context = {Context::add, Views::both}, .handler = &Form::mnuAddBranch_Click},
    Command{.name = "mnuAddItem", .caption = "Add &Item", .group = Group::addItem,
            .shortcut = "Ctrl+I", .button = {Bar::add, "item", "add Item", "item"},
            .context = {Context::add, Views::both}, .handler = &Form::mnuAddItem_Click},

    menu("mnuEdit", "&Edit", Group::byRule),
    Command{.name = "mnuCopy", .caption = "&Copy", .group = Group::copy,
            .shortcut = "Ctrl+C", .button = {Bar::edit, "copy", "copy", "copy"},
            .context = {Context::edit, Views::both}, .handler = &Form::mnuCopy_Click},
    Command{.name = "mnuCut", .caption = "Cu&t", .group = Group::cut,
            .shortcut = "Ctrl+X", .button = {Bar::edit, "cut", "cut", "cut"},
            .context = {Context::edit, Views::both}, .handler = &Form::mnuCut_Click},
    Command{.name = "mnuPaste", .caption = "&Paste", .group = Group::paste,
            .shortcut = "Ctrl+V", .button = {Bar::edit, "paste", "paste", "paste"},
            .context = {Context::edit, Views::both}, .handler = &Form::mnuPaste_Click},
    Command{.name = "mnuDelete", .caption = "&Delete Object", .group = Group::remove,
            .shortcut = "Del", .button = {Bar::edit, "delete", "delete", "delete"},
            .context = {Context::edit, Views::both}, .handler = &Form::mnuDelete_Click},
    separator("mnunull4"),
    Command{.name = "mnuPasteName", .caption = "Paste Item names from Clipboard",
            .group = Group::pasteNames,
            .button = {Bar::texts, "pastitem", "Replace Item Name", "pastename"},
            .context = {Context::texts}, .handler = &Form::mnuPasteName_Click},
    Command{.name = "mnuPasteComment", .caption = "Paste Item comments from Clipboard",
            .group = Group::pasteComments,
            .button = {Bar::texts, "pastcomment", "Replace Item Comment", "pastecomment"},
            .context = {Context::texts}, .handler = &Form::mnuPasteComment_Click},

    menu("mnuView", "&View", Group::view),
    Command{.name = "mnuIcon", .caption = "&Icon", .group = Group::view,
            .button = {Bar::view, "icon", "view icon", "icon"},
            .view = ListView::View::icon, .handler = &Form::mnuIcon_Click},
    Command{.name = "mnuSmallIcon", .caption = "&SmallIcon", .group = Group::view,
            .button = {Bar::view, "smallicon", "view smallicon", "smallicon"},
            .view = ListView::View::smallIcon, .handler = &Form::mnuSmallIcon_Click},
    Command{.name = "mnuList", .caption = "&List", .group = Group::view,
            .button = {Bar::view, "list", "view list", "list"},
            .view = ListView::View::list, .handler = &Form::mnuList_Click},
    Command{.name = "mnuReport", .caption = "&Report", .group = Group::view,
            .button = {Bar::view, "report", "view report", "report"},
            .view = ListView::View::report, .handler = &Form::mnuReport_Click},

    menu("mnuTools", "&Tools", Group::find),
    Command{.name = "mnuFind", .caption = "&Find", .group = Group::find,
            .hiddenShortcut = "Ctrl+F", .desktopKey = DesktopKey::find,
            .button = {Bar::find, "find", "", "find"},
            .handler = &Form::mnuFind_Click},

    Command{.kind = Kind::menu, .name = "mnuAbout", .caption = "&About",
            .handler = &Form::mnuAbout_Click},

    Command{.kind = Kind::inContextMenus, .name = "mnuUndo", .caption = "&Undo",
            .shortcut = "Ctrl+Z", .context = {Context::history, Views::both},
            .handler = &Form::mnuUndo_Click, .captionNow = &Form::undoCaption},
    Command{.kind = Kind::inContextMenus, .name = "mnuRedo", .caption = "R&edo",
            .shortcut = "Ctrl+Y; Ctrl+Shift+Z", .context = {Context::history, Views::both},
            .handler = &Form::mnuRedo_Click, .captionNow = &Form::redoCaption},
    Command{.kind = Kind::inContextMenus, .name = "mnuProperties", .caption = "P&roperties",
            .context = {Context::properties, Views::both, true},
            .handler = &Form::mnuProperties_Click, .captionNow = &Form::propertiesCaption},
    Command{.kind = Kind::inContextMenus, .name = "mnuItemProperties",
            .caption = "Properties o&f Several Items...", .context = {Context::properties},
            .handler = &Form::mnuItemProperties_Click,
            .captionNow = &Form::itemPropertiesCaption},
    Command{.kind = Kind::inContextMenus, .name = "mnuCopyTable", .caption = "Copy &as Table",
            .context = {Context::texts}, .handler = &Form::mnuCopyTable_Click,
            .captionNow = &Form::copyTableCaption},
};
// clang-format on

/// The rows for which `groupOf` returns another group than `none`, sorted by group.
template <typename GroupOf>
std::vector<const Command*> inOrderOf(const GroupOf& groupOf) {
    std::vector<const Command*> rows;
    for (const Command& command : table)
        if (groupOf(&command) != decltype(groupOf(&command)){}) rows.push_back(&command);
    std::ranges::stable_sort(rows, {}, groupOf);
    return rows;
}

constexpr CommandState with(CommandState state, std::initializer_list<Group> groups) {
    for (const Group group : groups)
        state.at(static_cast<std::size_t>(group)) = true;
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
// Deliberate: a device's row in the list does not enable delete, and paste is enabled at the root,
// where it then refuses.
constexpr CommandState opened =
    with({}, {Group::fileOpen, Group::fileSave, Group::settings, Group::find});
constexpr CommandState clicked = with(opened, {Group::view});

const CommandState noConfiguration = with({}, {Group::fileOpen});
const CommandState loading = {};
const CommandState configurationOpen = with(opened, {Group::addDevice});
const CommandState rootSelected = with(clicked, {Group::addDevice, Group::paste});
const CommandState deviceRowSelected =
    with(clicked, {Group::addBranch, Group::addItem, Group::paste});
const CommandState branchRowSelected = with(deviceRowSelected, {Group::remove});
const CommandState containerSelected = branchRowSelected;
const CommandState containerSelectedItemsListed =
    with(containerSelected, {Group::pasteNames, Group::pasteComments});
const CommandState itemRowSelected = with(
    clicked, {Group::copy, Group::cut, Group::remove, Group::pasteNames, Group::pasteComments});
const CommandState itemSelected = itemRowSelected;
}  // namespace commandStates

std::span<const Command> commandTable() { return table; }

const Command& commandNamed(std::string_view name) {
    const auto* const row = std::ranges::find(table, name, &Command::name);
    if (row == table.end()) throw RunTimeError(ErrorNumber::elementNotFound);
    return *row;
}

std::span<const Command* const> toolbarCommands() {
    static const auto rows = inOrderOf([](const Command* it) { return it->button.group; });
    return rows;
}

std::span<const Command* const> contextCommands() {
    static const auto rows = inOrderOf([](const Command* it) { return it->context.group; });
    return rows;
}

bool isEnabledIn(const CommandState& state, const Command& command) {
    switch (command.group) {
        case Group::always: return true;
        case Group::byRule: break;
        default: return isOn(state, command.group);
    }
    if (command.name == "mnuFile") return anyOn(state, {Group::fileOpen, Group::fileSave});
    // Deliberate: delete is in the Edit menu, but it enables the Objects menu.
    if (command.name == "mnuObjects") {
        return anyOn(state, {Group::settings, Group::addBranch, Group::addItem, Group::addDevice,
                             Group::remove});
    }
    return anyOn(state, {Group::copy, Group::cut, Group::paste});  // mnuEdit
}
