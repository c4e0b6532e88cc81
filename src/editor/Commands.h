// The table of the editor's commands. Menus, separators, toolbar, shortcuts, tooltips, pictures,
// groups and handlers all come from it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "model/ListView.h"

class frmEditing;

/// Groups of commands that are enabled and disabled together, in EnMenuButt's order.
enum class CommandGroup : std::uint8_t {
    fileOpen,
    fileSave,
    settings,
    addBranch,
    addItem,
    addDevice,
    copy,
    cut,
    paste,
    remove,
    view,
    find,
    pasteNames,
    pasteComments,
    /// Enabled in every state.
    always,
    /// A top menu that contains several groups. isEnabledIn() has a rule for each.
    byRule,
};
inline constexpr auto commandGroupCount = static_cast<std::size_t>(CommandGroup::always);

/// The toolbar button of a command. Buttons are ordered by group, then by table row. There is a gap
/// between two groups.
struct ToolbarButton {
    enum class Group : std::uint8_t { none, file, settings, add, edit, view, find, texts, exit };

    Group group = Group::none;
    std::string_view key = {};
    std::string_view tooltip = {};
    std::string_view picture = {};  ///< the key that icons::toolbar() takes
};

/// The entry of a command in the context menus of the views, ordered like the buttons.
struct ContextEntry {
    enum class Group : std::uint8_t { none, history, properties, add, edit, texts };
    enum class Views : std::uint8_t { list, both };

    Group group = Group::none;
    Views views = Views::list;
    bool isDoubleClick = false;  ///< does the same as a double click
};

/// Commands for which a desktop may define its own standard keys.
enum class DesktopKey : std::uint8_t { none, newFile, open, save, saveAs, find };

/// One row of the table. Rows have the order of the menus: a top menu, then its entries.
///
///     const Command& save = commandNamed("mnuSaveCfg");
///     if (isEnabledIn(commandStates::itemSelected, save)) (form.*save.handler)();
struct Command {
    /// `inContextMenus`: an entry that only the context menus show.
    enum class Kind : std::uint8_t { menu, entry, separator, inContextMenus };

    Kind kind = Kind::entry;
    std::string_view name;     ///< e.g. "mnuNewCfg"
    std::string_view caption;  ///< "&" marks the accelerator letter
    CommandGroup group = CommandGroup::always;
    std::string_view shortcut = {};        ///< e.g. "Ctrl+G; Ctrl+H"; empty when there is none
    std::string_view hiddenShortcut = {};  ///< works too, but no menu shows it
    DesktopKey desktopKey = {};            ///< the desktop's keys for this work too
    ToolbarButton button = {};
    ContextEntry context = {};
    std::optional<ListView::View> view = {};  ///< the view mode that the command sets
    /// Runs the command; null when the command does nothing.
    void (frmEditing::*handler)() = nullptr;
    /// Only for `inContextMenus`: returns the caption when the menu opens, or nothing while the
    /// command cannot be chosen.
    std::optional<std::string> (frmEditing::*captionNow)() const = nullptr;
};

/// The whole table.
std::span<const Command> commandTable();

/// Returns the row with that name. Raises ErrorNumber::elementNotFound when there is none.
const Command& commandNamed(std::string_view name);

/// The rows that have a toolbar button, in the toolbar's order.
std::span<const Command* const> toolbarCommands();
/// The rows that have an entry in context menus, in the order of those menus.
std::span<const Command* const> contextCommands();

/// Which command groups are enabled, in EnMenuButt's order.
using CommandState = std::array<bool, commandGroupCount>;

/// The ten states that selections and events of the document set.
namespace commandStates {
extern const CommandState noConfiguration;
extern const CommandState loading;
extern const CommandState configurationOpen;
extern const CommandState rootSelected;
extern const CommandState containerSelected;
extern const CommandState containerSelectedItemsListed;
extern const CommandState itemSelected;
extern const CommandState deviceRowSelected;
extern const CommandState branchRowSelected;
extern const CommandState itemRowSelected;
}  // namespace commandStates

/// Returns whether a row of the table is enabled in a state: by the flag of its group, or by its
/// own rule if it is a top menu that contains several groups.
bool isEnabledIn(const CommandState& state, const Command& command);
