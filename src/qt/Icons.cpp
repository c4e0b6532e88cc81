#include "qt/Icons.h"

#include <QFile>
#include <QHash>
#include <QString>

#include "qt/Text.h"

namespace {

QString pathOf(const char* folder, std::string_view key) {
    return QString(":/icons/%1/%2.svg").arg(folder, toQt(key));
}

/// A picture is read once: the views ask for one at every cell that they paint.
const QIcon& picture(const char* folder, std::string_view key, std::string_view substitute) {
    static QHash<QString, QIcon> known;
    const QString path = pathOf(folder, key);
    auto place = known.find(path);
    if (place == known.end()) {
        const QString file = QFile::exists(path) ? path : pathOf(folder, substitute);
        QIcon icon;
        // In a selected row too: the tint that the toolkit gives it there makes it hard to see.
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

QIcon application() { return QIcon(":/icons/app.svg"); }

}  // namespace icons
