#include "qt/Icons.h"

#include <QFile>
#include <QHash>
#include <QPainter>
#include <QString>
#include <algorithm>

#include "qt/Text.h"

namespace {

QString pathOf(const char* folder, std::string_view key) {
    return QString(":/icons/%1/%2." PICTURE_FORMAT).arg(folder, toQt(key));
}

/// Reads each picture once, as the views need one for every cell that they paint. `substitute` is
/// the key of the picture to use when there is none for `key`.
const QIcon& picture(const char* folder, std::string_view key, std::string_view substitute) {
    static QHash<QString, QIcon> known;
    const QString path = pathOf(folder, key);
    auto place = known.find(path);
    if (place == known.end()) {
        const QString file = QFile::exists(path) ? path : pathOf(folder, substitute);
        QIcon icon;
        // The same picture for selected rows: the toolkit would tint it, which is hard to see.
        for (const auto mode : {QIcon::Normal, QIcon::Selected})
            icon.addFile(file, QSize(), mode);
        place = known.insert(path, icon);
    }
    return *place;
}

}  // namespace

namespace icons {

const QIcon& tree(std::string_view key) { return picture("tree", key, "item"); }

const QIcon& list(std::string_view key) { return picture("list", key, "item"); }

const QIcon& toolbar(std::string_view key) { return picture("toolbar", key, "item"); }

QSize besideText(const QFontMetrics& text) {
    const int side = std::max(16, text.height() * 9 / 10);
    return {side, side};
}

const QIcon& mark() { return picture("marks", "mark", "mark"); }

QIcon marked(const QIcon& picture) {
    static QHash<qint64, QIcon> known;
    auto place = known.find(picture.cacheKey());
    if (place == known.end()) {
        QIcon icon;
        // The sizes that the views use at the usual scales of screens.
        for (const int side : {16, 24, 32, 48, 64, 96}) {
            QPixmap drawn = picture.pixmap(QSize(side, side), 1);
            const int sign = side * 11 / 16;
            QPainter(&drawn).drawPixmap(side - sign, side - sign, mark().pixmap(sign));
            for (const auto mode : {QIcon::Normal, QIcon::Selected})
                icon.addPixmap(drawn, mode);
        }
        place = known.insert(picture.cacheKey(), icon);
    }
    return *place;
}

QColor markColour(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return dark ? QColor(0xFF, 0xB0, 0x5C) : QColor(0xA8, 0x32, 0x00);
}

QIcon application() { return QIcon(":/icons/app." PICTURE_FORMAT); }

}  // namespace icons
