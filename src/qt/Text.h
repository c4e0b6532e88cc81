// Converts between the toolkit's texts and UTF-8.
#pragma once

#include <QRegularExpression>
#include <QString>
#include <string>
#include <string_view>

#include "base/Text.h"

inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// Converts a text. A longer one is cut after that many characters and ends with an ellipsis.
inline QString toQt(std::string_view text, int characters) {
    std::size_t end = 0;
    for (; characters > 0 && end < text.size(); --characters)
        nextCharacter(text, end);
    return end == text.size() ? toQt(text) : toQt(text.substr(0, end)) + QChar(0x2026);
}

/// Lets the lines of a text break inside long words too, such as names of files. The toolkit breaks
/// lines at blanks only.
inline QString breakable(QString text) {
    static const QRegularExpression longWord("(\\S{40})(?=\\S)");
    return text.replace(longWord, QStringLiteral("\\1\u200B"));  // ZERO WIDTH SPACE
}

/// The number of characters of a text that are drawn at most. The toolkit takes seconds to lay out
/// a million characters, and crashes with several millions.
inline constexpr int drawnCharacters = 1000;
