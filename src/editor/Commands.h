// The one table of the editor's commands: menus, separators, toolbar, shortcuts, tooltips,
// pictures, groups and handlers are all read from it.
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

/// Commands that are enabled and disabled together, in the order in which EnMenuButt takes them.
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
    /// Not governed by any command state.
    always,
    /// A top menu that holds several groups and is enabled by a rule of its own.
    byRule,
};
inline constexpr auto commandGroupCount = static_cast<std::size_t>(CommandGroup::always);

/// A command's button. Buttons stand by group, with a gap between two groups, and within a group in
/// the order of the table.
struct ToolbarButton {
    enum class Group : std::uint8_t { none, file, settings, add, edit, view, find, texts, exit };

    Group group = Group::none;
    std::string_view key = {};
    std::string_view tooltip = {};
    std::string_view picture = {};  ///< its key
};

/// A command's entry in the context menus of the views, in the same order.
struct ContextEntry {
    enum class Group : std::uint8_t { none, history, properties, add, edit, texts };
    enum class Views : std::uint8_t { list, both };

    Group group = Group::none;
    Views views = Views::list;
    bool isDoubleClick = false;  ///< does what a double click does
};

/// What desktops have keys of their own for.
enum class DesktopKey : std::uint8_t { none, newFile, open, save, saveAs, find };

/// One row of the table. Rows stand in the order of the menus: a top menu, then what it holds.
struct Command {
    /// `inContextMenus`: an entry that is in the context menus only.
    enum class Kind : std::uint8_t { menu, entry, separator, inContextMenus };

    Kind kind = Kind::entry;
    std::string_view name;     ///< e.g. "mnuNewCfg"
    std::string_view caption;  ///< "&" marks the accelerator letter
    CommandGroup group = CommandGroup::always;
    std::string_view shortcut = {};        ///< e.g. "Ctrl+G; Ctrl+H"; empty when there is none
    std::string_view hiddenShortcut = {};  ///< works too, but no menu shows it
    DesktopKey desktopKey = {};            ///< works too, where it is another
    ToolbarButton button = {};
    ContextEntry context = {};
    std::optional<ListView::View> view = {};  ///< what the command shows the list as
    /// What choosing the command does; null when it does nothing.
    void (frmEditing::*handler)() = nullptr;
    /// Of an entry that is in the context menus only: its caption as a menu opens; none while it
    /// cannot be chosen.
    std::optional<std::string> (frmEditing::*captionNow)() const = nullptr;
};

/// The whole table.
std::span<const Command> commandTable();

/// The row of that name. Raises ErrorNumber::elementNotFound.
const Command& commandNamed(std::string_view name);

/// The rows that have a toolbar button, in the toolbar's order.
std::span<const Command* const> toolbarCommands();
/// Those that are in context menus, in their order.
std::span<const Command* const> contextCommands();

/// Which command groups are on, in EnMenuButt's order.
using CommandState = std::array<bool, commandGroupCount>;

/// The ten states that selections and document events set.
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

/// Whether a row of the table is enabled in a state: its group's flag, or for a top menu that
/// holds several groups its own rule.
bool isEnabledIn(const CommandState& state, const Command& command);
