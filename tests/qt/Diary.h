// A diary of what is done by hand in the main window: after each deed it tells what has changed.
#pragma once

#include <functional>

#include "qt/Approved.h"
#include "qt/Icons.h"
#include "qt/WindowWorld.h"

class Diary : public WindowWorld {
 public:
    explicit Diary(const std::string& configuration, Forms* ownForms = nullptr)
        : WindowWorld(ownForms) {
        forms.whenShown<frmItems>([this](auto& dialog) { opens(dialog.txtItemName); });
        forms.whenShown<frmBranch>([this](auto& dialog) { opens(dialog.txtBranchName); });
        forms.whenShown<frmPLC>([this](auto& dialog) { opens(dialog.txtName); });
        does("opens a file", [&] { openText(configuration); });
    }

    QString text() const { return text_; }

    void does(const QString& what, const std::function<void()>& act) {
        text_ += "> " + what + "\n";
        act();
        QCoreApplication::processEvents();
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            tell("menu: " + entriesOf(*menu));
            menu->close();
        }
        for (const std::string& message : desktop.messages())
            tell("is told " + toQt(message));
        desktop.forgetMessages();
        const QStringList now = seen();
        for (qsizetype i = 0; i < now.size(); ++i)
            if (now[i] != seen_.value(i)) tell(now[i]);
        seen_ = now;
    }
    void tell(const QString& line) { text_ += "  " + line + "\n"; }

    void chooses(const char* command) {
        does(QString("chooses ") + command, [&] { entry(command).trigger(); });
    }
    void presses(const QString& keys) {
        for (const QString& key : keys.split(' ')) {
            QWidget* at = window.focusWidget();
            does("presses " + key, [&] {
                if (key != "Menu") return QTest::keySequence(at, QKeySequence(key));
                // As platforms with a display make of that key.
                QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
                QCoreApplication::sendEvent(qobject_cast<QAbstractScrollArea*>(at)->viewport(),
                                            &menu);
            });
        }
    }
    void clicks(const QString& what, const QAbstractScrollArea& view, QPoint spot,
                Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers held = {}) {
        does((button == Qt::RightButton ? "right-clicks " : "clicks ") + what,
             [&] { QTest::mouseClick(view.viewport(), button, held, spot); });
    }
    void clicks(const char* key, Qt::MouseButton button = Qt::LeftButton) {
        clicks(key, tree, spotOnNode(key), button);
    }
    void clicks(int row, Qt::MouseButton button = Qt::LeftButton) {
        clicks(QString("row %1").arg(row), rows(), spotOnRow(row), button);
    }
    /// In a node's context menu.
    void choosesAt(const char* key, const QString& choice) {
        does(QString("chooses %1 at %2").arg(choice, key), [&] {
            QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, spotOnNode(key));
            for (QAction* action : QApplication::activePopupWidget()->actions())
                if (QString(action->text()).remove('&') == choice) action->trigger();
            QApplication::activePopupWidget()->close();
        });
    }
    void drags(const QString& what, const QAbstractScrollArea& view, QPoint from, QPoint to,
               Qt::MouseButton button = Qt::LeftButton) {
        does("drags " + what, [&] {
            QTest::mousePress(view.viewport(), button, {}, from);
            QTest::mouseMove(view.viewport(), to);
            QTest::mouseRelease(view.viewport(), button, {}, to);
        });
    }
    void hovers(QAbstractItemView& view, const QModelIndex& index) {
        QString tip = tooltipAt(*view.viewport(), spotOn(view, index));
        text_ += "> hovers over " + index.data().toString().left(10) + "\n";
        tell("tooltip: " + tip.replace('\n', "\\n").replace(QChar(0x200B), "_"));
    }

 private:
    void opens(const TextBox& name) { tell("opens " + toQt(name.text)); }

    QStringList seen() const {
        QString off, checked;
        for (const QAction* action : window.findChildren<QAction*>(QRegularExpression("^[a-z]"))) {
            if (!action->isEnabled() && !action->isSeparator()) off += " " + action->objectName();
            if (action->isChecked()) checked += " " + action->objectName();
        }
        const QWidget* focus = window.focusWidget();
        return {"wrong: " + disagreement(),
                "off:" + off,
                "tree: " + shownBelow({}, tree.viewport()->grab().toImage()),
                "columns: " + columns(),
                "list as" + checked + arrangement() + ":" + shownRows(),
                QString("first in sight: ") + tree.indexAt({1, 1}).data().toString(),
                QString("keyboard: ") + (focus == &tree     ? "tree"
                                         : focus == &rows() ? "list"
                                                            : "none")};
    }

    /// "Plant[>*FLOOR1[Text1] FLOOR2+]": what lies open below a node. Folded ones have a plus.
    QString shownBelow(const QModelIndex& parent, const QImage& picture) const {
        QStringList texts;
        for (int row = 0; tree.isVisible() && row < tree.model()->rowCount(parent); ++row) {
            const QModelIndex index = tree.model()->index(row, 0, parent);
            texts.append(marksOf(tree, index, picture) + index.data().toString() +
                         (tree.isExpanded(index) ? "[" + shownBelow(index, picture) + "]"
                          : tree.model()->hasChildren(index) ? "+"
                                                             : ""));
        }
        return texts.join(' ');
    }
    QString shownRows() const {
        QString text;
        const QImage picture = rows().viewport()->grab().toImage();
        for (int row = 0; list.isVisible() && row < rows().model()->rowCount(); ++row) {
            const QModelIndex first = rows().model()->index(row, 0);
            text += " " + marksOf(rows(), first, picture) + first.data().toString();
            for (int column = 1; column < rows().model()->columnCount(); ++column)
                text += "|" + first.siblingAtColumn(column).data().toString();
        }
        return text;
    }

    /// The current one has an arrow, selected ones a star, which is hollow while no command acts on
    /// them. Others that are coloured have a roof. A fault's sign beside the picture is told, and
    /// in the list what the picture is.
    static QString marksOf(const QAbstractItemView& view, const QModelIndex& index,
                           const QImage& picture) {
        static const auto names = [] {
            QHash<qint64, QString> known;
            for (const QString& key : QDir(":/icons/tree").entryList())
                known[icons::tree(fromQt(key.chopped(4))).cacheKey()] = "";
            for (const QString& key : QDir(":/icons/list").entryList())
                known[icons::list(fromQt(key.chopped(4))).cacheKey()] = key.chopped(4) + ":";
            return known;
        }();
        const QRect place = view.visualRect(index) & picture.rect();
        const auto colour = [&](QPalette::ColorRole role) {
            return view.palette().color(QPalette::Active, role).rgb();
        };
        bool shines = false;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                shines |= picture.pixel(x, y) == colour(QPalette::Highlight);
        const QPoint corner = place.topRight() + QPoint(-2, 2);
        const bool plain = place.isEmpty() || picture.pixel(corner) == colour(QPalette::Base);
        const auto icon = index.data(Qt::DecorationRole).value<QIcon>().cacheKey();
        return QString(view.currentIndex() == index ? ">" : "") +
               (view.selectionModel()->isSelected(index) ? (shines ? "*" : "o")
                : plain                                  ? ""
                                                         : "^") +
               names.value(icon, "!");
    }

    /// Of icons: their size and the way to the last one, in characters and lines.
    QString arrangement() const {
        const auto* icons = qobject_cast<QListView*>(&rows());
        if (icons == nullptr) return "";
        const int last = rows().model()->rowCount() - 1;
        const QRect place = rows().visualRect(rows().model()->index(0, 0));
        const QRect there = rows().visualRect(rows().model()->index(last, 0));
        const int character = icons->fontMetrics().averageCharWidth();
        const int line = icons->fontMetrics().height();
        return QString(" of %1 x %2, the last %3 | %4 away")
            .arg(place.width() / character)
            .arg(place.height() / line)
            .arg((there.x() - place.x()) / character)
            .arg((there.y() - place.y()) / line);
    }

    /// Headers and widths, as fractions of the list's, and how the rows are sorted.
    QString columns() const {
        if (report() == nullptr) return "none";
        QStringList texts;
        for (int i = 0; i < report()->model()->columnCount(); ++i)
            texts.append(
                report()->model()->headerData(i, Qt::Horizontal).toString() +
                QString(" %1").arg(1.0 * report()->columnWidth(i) / list.width(), 0, 'f', 1));
        const QHeaderView& header = *report()->header();
        if (header.isSortIndicatorShown())
            texts.append(
                QString("sorted by %1%2")
                    .arg(header.sortIndicatorSection())
                    .arg(header.sortIndicatorOrder() == Qt::AscendingOrder ? "" : ", falling"));
        return texts.join(", ");
    }

    static QString entriesOf(const QMenu& menu) {
        QStringList texts;
        for (const QAction* action : menu.actions())
            texts.append((menu.defaultAction() == action ? "*" : "") +
                         (action->isSeparator() ? "-" : action->text()) +
                         (action->isEnabled() ? "" : " (off)"));
        return texts.join(", ");
    }

    QString text_;
    QStringList seen_;
};
