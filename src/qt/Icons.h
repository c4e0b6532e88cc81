// The pictures of the editor. The keys are those that the other layers use.
#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QIcon>
#include <QPalette>
#include <string_view>

namespace icons {

/// Tree nodes and small list icons: "plc", "serial", "branch", "config", "item", "main".
const QIcon& tree(std::string_view key);

/// Large list icons: "plc", "item" and the EIS data types. A data type without its own picture has
/// that of an item.
const QIcon& list(std::string_view key);

/// Toolbar buttons, by ToolbarButton::picture.
const QIcon& toolbar(std::string_view key);

/// The size of a small picture beside a text, in pixels: 16, or more if the text is larger.
QSize besideText(const QFontMetrics& text);

/// The sign for a text that would make the saved file faulty.
const QIcon& mark();

/// Returns a picture with that sign in its corner.
QIcon marked(const QIcon& picture);

/// The colour of such a text; readable on the palette's background.
QColor markColour(const QPalette& palette);

/// The icon of the application.
QIcon application();

}  // namespace icons
