// The pictures of the editor, by the keys under which the rules know them.
#pragma once

#include <QColor>
#include <QFontMetrics>
#include <QIcon>
#include <QPalette>
#include <string_view>

namespace icons {

/// Tree nodes and small list icons: "plc", "serial", "branch", "config", "item", "main".
const QIcon& tree(std::string_view key);

/// Large list icons: "plc", "item" and the EIS data types. A data type without a picture of its
/// own gets that of an item.
const QIcon& list(std::string_view key);

/// Toolbar buttons.
const QIcon& toolbar(std::string_view key);

/// The size of a small picture beside a text: 16 pixels, more where the text is larger.
QSize besideText(const QFontMetrics& text);

/// The sign beside a text that would spoil the saved file.
const QIcon& mark();

/// The picture with that sign in its corner.
QIcon marked(const QIcon& picture);

/// The colour of such a text, to be read on the palette's background.
QColor markColour(const QPalette& palette);

QIcon application();

}  // namespace icons
