// Between the toolkit's texts and ours.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "base/Text.h"

inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }

/// A text, of at most so many characters and then an ellipsis.
inline QString toQt(std::string_view text, int characters) {
    std::size_t end = 0;
    for (; characters > 0 && end < text.size(); --characters)
        nextCharacter(text, end);
    return end == text.size() ? toQt(text) : toQt(text.substr(0, end)) + QChar(0x2026);
}

/// No more characters of a text are drawn: the toolkit takes seconds to lay out a million, and ends
/// the program at some millions.
inline constexpr int drawnCharacters = 1000;
