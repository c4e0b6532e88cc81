// Mouse and keyboard input for the main window, and what it shows, as text.
#pragma once

#include "qt/Icons.h"
#include "qt/WindowWorld.h"

class WindowUser : public WindowWorld {
 public:
    explicit WindowUser(const std::string& configuration, Forms* ownForms = nullptr)
        : WindowWorld(ownForms) {
        forms.whenShown<frmItems>(
            [this](auto& dialog) { opened_ = toQt(dialog.txtItemName.text); });
        forms.whenShown<frmBranch>(
            [this](auto& dialog) { opened_ = toQt(dialog.txtBranchName.text); });
        forms.whenShown<frmPLC>([this](auto& dialog) { opened_ = toQt(dialog.txtName.text); });
        openText(configuration);
    }
    ~WindowUser() { QTEST_ASSERT(disagreement() == ""); }

    void presses(const QString& keys) {
        for (const QString& key : keys.split(' ')) {
            QWidget* at = window.focusWidget();
            if (key != "Menu") {
                QTest::keySequence(at, QKeySequence(key));
                continue;
            }
            // As platforms with a display translate the right button, and then that key.
            for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
                QVERIFY(QApplication::activePopupWidget() == nullptr);
                QContextMenuEvent menu(reason, {}, {});
                QCoreApplication::sendEvent(qobject_cast<QAbstractScrollArea*>(at)->viewport(),
                                            &menu);
            }
        }
    }
    static void drags(const QAbstractScrollArea& view, QPoint from, QPoint to,
                      Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(view.viewport(), button, {}, from);
        QTest::mouseMove(view.viewport(), to);
        QTest::mouseRelease(view.viewport(), button, {}, to);
        QCoreApplication::processEvents();
    }
    /// Chooses an entry of a node's context menu.
    void choosesAt(const char* key, const QString& choice) const {
        clicks(key, Qt::RightButton);
        QWidget* menu = QApplication::activePopupWidget();
        for (QAction* action : menu->actions())
            if (QString(action->text()).remove('&') == choice && action->isEnabled())
                action->trigger();
        menu->close();
        QCoreApplication::processEvents();
    }

    /// "Plant[*FLOOR1[Text1] FLOOR2+]": the visible nodes, collapsed ones with "+". Before the
    /// selected node is "*", or "o" if commands do not act on the tree; before the drop target "^".
    QString shownTree() const { return shown(tree, {}, painted(tree)); }
    /// The same for the first column of the list; in icon view with the names of the icons.
    QString shownRows() const { return shown(rows(), {}, painted(rows())); }
    /// Returns and clears the name in the last property dialog.
    QString opened() { return std::exchange(opened_, ""); }
    /// The enabled entries of the open menu, the default one with "*". Closes it.
    static QString menu() {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) return "none";
        QStringList texts;
        QStringList letters;
        for (const QAction* action : menu->actions()) {
            letters.append(QKeySequence::mnemonic(action->text()).toString());
            if (!letters.back().isEmpty() && letters.count(letters.back()) > 1) {
                return action->text() + " has the letter of another entry";
            }
            if (action->isEnabled() && !action->isSeparator())
                texts.append((menu->defaultAction() == action ? "*" : "") +
                             QString(action->text()).remove('&'));
        }
        menu->close();
        return texts.join(", ");
    }
    QString keyboard() const {
        const QWidget* at = window.focusWidget();
        return at == &tree ? "tree" : at == &rows() ? "list" : "";
    }
    /// Headings and widths, in tenths of the width of the list.
    QString columns() const {
        QStringList texts;
        for (int i = 0; report() != nullptr && i < report()->model()->columnCount(); ++i)
            texts.append(report()->model()->headerData(i, Qt::Horizontal).toString() + " " +
                         QString::number(qRound(10.0 * report()->columnWidth(i) / list.width())));
        return texts.join(", ");
    }

 private:
    /// What is on the screen, which is outdated if a view was not painted again.
    QImage painted(const QAbstractItemView& view) const {
        QCoreApplication::processEvents();
        const auto& screen = dynamic_cast<QImage&>(*window.backingStore()->paintDevice());
        const QWidget& port = *view.viewport();
        return screen.copy({port.mapTo(&window, QPoint()), port.size()});
    }

    static QString shown(const QAbstractItemView& view, const QModelIndex& parent,
                         const QImage& picture) {
        QStringList texts;
        const auto* tree = qobject_cast<const QTreeView*>(&view);
        for (int row = 0; view.isVisible() && row < view.model()->rowCount(parent); ++row) {
            const QModelIndex index = view.model()->index(row, 0, parent);
            const bool isOpen = tree != nullptr && tree->isExpanded(index);
            texts.append(marksOf(view, index, picture) + index.data().toString() +
                         (isOpen ? "[" + shown(view, index, picture) + "]"
                          : view.model()->hasChildren(index) ? "+"
                                                             : ""));
        }
        return texts.join(' ');
    }

    /// The marks from the colours of the row, and "!" if its icon has a warning sign.
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
        bool isHighlighted = false;
        for (int y = place.top(); y <= place.bottom(); ++y)
            for (int x = place.left(); x <= place.right(); ++x)
                isHighlighted |= picture.pixel(x, y) == colour(QPalette::Highlight);
        const QPoint corner = place.topRight() + QPoint(-2, 2);
        const bool isPlain = place.isEmpty() || view.currentIndex() == index ||
                             picture.pixel(corner) == colour(QPalette::Base);
        const auto icon = index.data(Qt::DecorationRole).value<QIcon>().cacheKey();
        return (view.selectionModel()->isSelected(index) ? (isHighlighted ? "*" : "o")
                : isPlain                                ? ""
                                                         : "^") +
               names.value(icon, "!");
    }

    QString opened_;
};
