// A diary of what is done by hand in the main window: after each deed it tells what has changed.
#pragma once

#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <functional>

#include "qt/WindowWorld.h"

class Diary : public WindowWorld {
 public:
    explicit Diary(const std::string& configuration) {
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

    void chooses(const char* command) {
        does(QString("chooses ") + command, [&] { entry(command).trigger(); });
    }
    void presses(const QString& key) {
        QWidget* at = window.focusWidget();
        does("presses " + key, [&] {
            if (key != "Menu") return QTest::keySequence(at, QKeySequence(key));
            // As platforms with a display make of that key.
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, {});
            QCoreApplication::sendEvent(qobject_cast<QAbstractScrollArea*>(at)->viewport(), &menu);
        });
    }
    void clicks(const QString& what, const QAbstractScrollArea& view, QPoint spot,
                Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers held = {}) {
        const QString with = QString(held == Qt::NoModifier ? "" : "with Ctrl ") +
                             (button == Qt::RightButton ? "right-clicks " : "clicks ");
        does(with + what, [&] { QTest::mouseClick(view.viewport(), button, held, spot); });
    }
    void clicks(const char* key, Qt::MouseButton button = Qt::LeftButton) {
        clicks(key, tree, spotOnNode(key), button);
    }
    void clicks(int row, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers held = {}) {
        clicks(QString("row %1").arg(row), rows(), spotOnRow(row), button, held);
    }
    void hovers(QAbstractItemView& view, const QModelIndex& index) {
        const QPoint spot = spotOn(view, index);
        QToolTip::showText({}, "nothing");
        QHelpEvent hover(QEvent::ToolTip, spot, view.viewport()->mapToGlobal(spot));
        QCoreApplication::sendEvent(view.viewport(), &hover);
        QString tip = QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
        text_ += "> hovers over " + index.data().toString().left(10) + "\n";
        tell(tip.replace('\n', "\\n").replace(QChar(0x200B), "_"));
    }

 private:
    void tell(const QString& line) { text_ += "  " + line + "\n"; }
    void opens(const TextBox& name) { tell("opens " + toQt(name.text)); }

    QStringList seen() const {
        const auto* icons = qobject_cast<QListView*>(list.currentWidget());
        const bool large = icons != nullptr && icons->viewMode() == QListView::IconMode;
        const bool down = icons != nullptr && icons->flow() == QListView::TopToBottom;
        const QWidget* focus = window.focusWidget();
        return {
            "tree: " + shownBelow({}), "columns: " + columns(),
            (icons == nullptr ? "report:"
             : large          ? "icons:"
             : down           ? "list:"
                              : "small icons:") +
                shownRows(),
            QString("acts on:") + (shines(tree) ? " tree" : "") + (shines(rows()) ? " list" : ""),
            QString("keyboard: ") + (focus == &tree     ? "tree"
                                     : focus == &rows() ? "list"
                                                        : "none")};
    }

    /// "Plant[>*FLOOR1[Text1] FLOOR2+]": what lies open below a node. Folded ones have a plus, the
    /// selected one a star, the current one an arrow.
    QString shownBelow(const QModelIndex& parent) const {
        QStringList texts;
        for (int row = 0; tree.isVisible() && row < tree.model()->rowCount(parent); ++row) {
            const QModelIndex index = tree.model()->index(row, 0, parent);
            const bool open = tree.isExpanded(index);
            texts.append(marksOf(tree, index) + index.data().toString() +
                         (open                               ? "[" + shownBelow(index) + "]"
                          : tree.model()->hasChildren(index) ? "+"
                                                             : ""));
        }
        return texts.join(' ');
    }
    QString shownRows() const {
        QString text;
        for (int row = 0; list.isVisible() && row < rows().model()->rowCount(); ++row) {
            const QModelIndex first = rows().model()->index(row, 0);
            text += " " + marksOf(rows(), first) + first.data().toString();
            for (int column = 1; column < rows().model()->columnCount(); ++column)
                text += "|" + first.siblingAtColumn(column).data().toString();
        }
        return text;
    }
    static QString marksOf(const QAbstractItemView& view, const QModelIndex& index) {
        return QString(view.currentIndex() == index ? ">" : "") +
               (view.selectionModel()->isSelected(index) ? "*" : "");
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

    /// Whether commands act on a view: then its selection has the strong colour.
    static bool shines(QAbstractItemView& view) {
        const QImage picture = view.viewport()->grab().toImage();
        const QRgb colour = view.palette().color(QPalette::Active, QPalette::Highlight).rgb();
        for (int y = 0; view.isVisible() && y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixel(x, y) == colour) return true;
        return false;
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
