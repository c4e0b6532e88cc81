// The pictures of the editor, by the keys under which the rules know them.
#pragma once

#include <QIcon>
#include <string_view>

namespace icons {

/// Tree nodes and small list icons: "plc", "serial", "branch", "config", "item", "main".
const QIcon& tree(std::string_view key);

/// Large list icons: "plc", "item" and the EIS data types. A data type without a picture of its
/// own gets that of an item.
const QIcon& list(std::string_view key);

/// Toolbar buttons.
const QIcon& toolbar(std::string_view key);

QIcon application();

}  // namespace icons
