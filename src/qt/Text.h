// Between the toolkit's texts and ours.
#pragma once

#include <QString>
#include <string>
#include <string_view>

inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string fromQt(const QString& text) { return text.toStdString(); }
