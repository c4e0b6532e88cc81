// The tree and the list in the main window, operated with mouse and keyboard.
#include <qpa/qplatformtheme.h>
#include <qpa/qwindowsysteminterface.h>

#include <QtGui/private/qguiapplication_p.h>
#include <ctime>
#include <random>
#include <regex>

#include "qt/WindowUser.h"

namespace {

std::string typed(const std::string& name, const std::string& type) {
    return std::regex_replace(tag(name), std::regex("EIS1"), type);
}

std::string twoFloors() {
    const std::string texts = typed("Text1", "EIS5") + typed("Text2_of_a_long_name", "EIS10_S") +
                              typed("Text3", "EIS11_S");
    return configuration(plc("Annex", tag("Door&#9786;")) +
                         plc("Plant", branch("FLOOR1", texts) + branch("FLOOR2", tag("Light1"))));
}

/// A pale line leads from each node to its parent, and on to its next sibling.
void expectLines(const QTreeView& tree) {
    const QImage picture = tree.viewport()->grab().toImage();
    const auto drawn = [&](int x, int y) {
        return qGray(picture.pixel(x, y)) > 128 && qGray(picture.pixel(x, y)) < 240;
    };
    QModelIndex row = tree.indexBelow(tree.model()->index(0, 0));
    for (; row.isValid(); row = tree.indexBelow(row)) {
        const QRect place = tree.visualRect(row);
        int x = place.left() - 1 - tree.indentation() / 2;
        QVERIFY(drawn(x, place.top()) && !drawn(x + 1, place.top()));
        QVERIFY(drawn(place.left() - 1, place.center().y()));
        for (QModelIndex node = row; node.isValid(); node = node.parent()) {
            const bool hasNext = node.siblingAtRow(node.row() + 1).isValid();
            QCOMPARE(drawn(x, place.bottom()), hasNext);
            QVERIFY(node == row || drawn(x, place.top()) == hasNext);
            x -= tree.indentation();
        }
    }
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void nodesAreSelectedByMouseAndKeyboard() {
        WindowUser user(twoFloors());
        QTreeView& tree = user.tree;
        const auto selected = [&] { return tree.currentIndex().data().toString(); };
        int chosen = 0;
        connect(&user.tree, &TreePane::nodeClicked, &user.tree, [&] { ++chosen; });
        QCOMPARE(user.shownTree(),
                 "*/plant.xml[Annex[!Door\u263a] Plant[FLOOR1[Text1 "
                 "Text2_of_a_long_name Text3] FLOOR2[Light1]]]");
        expectLines(tree);
        QVERIFY(!tree.header()->isVisible());
        user.clicks("Plant.FLOOR1");
        QCOMPARE(user.shownRows(), "Text1 Text2_of_a_long_name Text3");
        QCOMPARE(user.columns(),
                 "Item Name 2, Comment 3, Datatype 2, Address (Hex) 3, Access Rights 2, Index 3");
        user.presses("Home");
        QCOMPARE(user.columns(), "Plc Name 5, Port 2, EDI Type 3");
        user.presses("Down Down Down");
        QCOMPARE(selected(), "Plant");
        const QPoint one = user.spotOnNode("Plant.FLOOR1"), other = user.spotOnNode("Plant.FLOOR2");
        user.drags(tree, one, other);
        QCOMPARE(user.shownRows(), "Light1");
        user.entry("mnuIcon").trigger();
        user.drags(tree, one, other);  // back to the previous selection
        QCOMPARE(user.shownRows(), "Light1");
        user.clicks("Plant.FLOOR1", Qt::RightButton);
        QCOMPARE(user.menu(),
                 "*Properties, Add Branch, Add Item, Paste, Delete Object, "
                 "Take to move, Take to copy");
        QCOMPARE(selected(), "FLOOR1");
        QGuiApplication::clipboard()->setText("names");
        for (const char* key : {"F2", "Return"}) {
            user.presses(key);
            QCOMPARE(user.opened(), "FLOOR1");
        }
        user.presses("Menu");
        QVERIFY(user.menu().startsWith("*Properties"));
        user.presses("Ctrl+C");
        user.openNode("Plant.FLOOR2");
        QCOMPARE(user.opened(), "FLOOR2");
        const QPoint item = user.spotOnNode("Plant.FLOOR1.Text1");
        user.clicks(tree, item - QPoint(tree.indentation(), 0));
        QCOMPARE(user.shownRows(), "Text1");

        // Expand boxes and the space below the nodes select nothing. A node reaches to the edge.
        user.clicks(tree, one - QPoint(tree.indentation(), 0));
        user.clicks(tree, {one.x(), tree.viewport()->height() - 2});
        QCOMPARE(selected(), "Text1");
        QVERIFY(!tree.isExpanded(user.indexOf("Plant.FLOOR1")));
        user.clicks(tree, {tree.viewport()->width() - 2, one.y()});
        QCOMPARE(selected(), "FLOOR1");
        user.clicks(tree, user.spotOnNode("Plant.FLOOR2"), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(user.shownRows(), "Light1");
        user.clicks("config", Qt::RightButton);
        QCOMPARE(user.menu(), "Add Object, Paste");
        user.clicks("config");
        QCOMPARE(chosen, 14);  // once for each
        user.presses("Left");
        QCOMPARE(user.shownTree(), "*/plant.xml+");
        WindowUser::doubleClick(user.rows(), user.spotOnRow(1));
        QCOMPARE(user.opened(), "Plant");
        QCOMPARE(user.keyboard(), "list");
        QCOMPARE(user.shownTree(), "/plant.xml[Annex[!Door\u263a] oPlant[FLOOR1+ FLOOR2[Light1]]]");
        user.clicks("Plant.FLOOR1.Text3");
        user.desktop.willAnswer({Answer::no, Answer::yes});
        user.presses("Del Del");
        QCOMPARE(user.shownRows(), "Text1 Text2_of_a_long_name");
        QCOMPARE(QGuiApplication::clipboard()->text(), "names");

        const QSignalSpy ends(&user.window, &MainWindow::applicationEnded);
        user.document.saved = false;
        user.disk.writeFault = ErrorNumber::diskFull;
        user.desktop.willAnswer({Answer::yes, Answer::yes, Answer::no});
        QVERIFY(!user.window.close());
        QVERIFY(user.window.close());
        QCOMPARE(ends, QList({QVariantList{0}}));
        user.document.saved = false;
        QVERIFY(user.window.close());  // without another question
    }

    /// Whatever is renamed, added, removed, expanded or collapsed.
    static void treeIsAsWideAsItsWidestOpenRow() {
        WindowUser user(configuration(
            plc("P", branch("A", branch("B", tag("x") + tag("y")) + tag("z")) + tag("v"))));
        Document& document = user.document;
        std::mt19937 random(1);
        const auto below = [&](std::size_t n) { return random() % n; };
        const std::string wide(30, 'W');
        const std::string names[] = {
            "i", wide, wide + "\ni", "i\n" + wide, "\u4e2d\n" + wide, std::string(2000, 'i')};
        for (int step = 0; step < 1'000; ++step) {
            auto node = document.tree().nodes().begin();
            for (auto place = below(document.tree().nodes().size()); place > 0; --place)
                ++node;
            const bool isItem = (*node)->kind() == NodeKind::item;
            if (!isItem && (*node)->kind() != NodeKind::branch) continue;
            const std::string key = (*node)->key().string();
            const SharedText name(names[below(6)] + std::to_string(step));
            const auto doing = below(6);
            if (doing < 2) user.tree.setExpanded(user.indexOf(key.c_str()), doing == 0);
            for (auto undone = doing == 2 ? below(9) : 0; undone > 0; --undone)
                document.undo();
            const Document::Step undoable(document, "Change");
            if (doing == 3 && document.tree().nodes().size() > 5) document.RemoveSubtree(**node);
            if (doing > 3)
                isItem ? document.renameItem(**node, name) : document.renameBranch(**node, name);
            QCOMPARE(user.disagreement(), "");
        }
    }

    /// Whatever standard keys the desktop has.
    static void keysWorkOnEveryDesktop() {
        struct Theme : QPlatformTheme {
            QVariant themeHint(ThemeHint hint) const override {
                return hint == KeyboardScheme ? int(keys) : QPlatformTheme::themeHint(hint);
            }
            KeyboardSchemes keys = WindowsKeyboardScheme;
        } theme;
        auto& platform = QGuiApplicationPrivate::platform_theme;
        auto* const own = std::exchange(platform, &theme);
        const auto restore = qScopeGuard([&] { platform = own; });
        for (const auto keys :
             {Theme::WindowsKeyboardScheme, Theme::GnomeKeyboardScheme, Theme::KdeKeyboardScheme}) {
            theme.keys = keys;
            WindowUser user(twoFloors());
            user.clicks("Plant.FLOOR2");
            user.presses("Right Down Ctrl+C Home Down Down Down Down Ctrl+V");
            const auto isPasted = [&] { return user.shownRows().contains("Light1"); };
            QVERIFY(isPasted());
            for (const auto& [key, comesBack] : {std::pair("Ctrl+Z", false),
                                                 {"Ctrl+Y", true},
                                                 {"Ctrl+Z", false},
                                                 {"Ctrl+Shift+Z", true}}) {
                user.presses(key);
                QVERIFY2(isPasted() == comesBack, key);
            }
            user.clicks("Plant.FLOOR1");
            for (const auto& [key, shown] : {std::pair("Ctrl+B", "NewBranch3"),
                                             {"Ctrl+I", "New Item 6"},
                                             {"F2", "FLOOR1"},
                                             {"Home Ctrl+P", "New Device 3"}}) {
                user.presses(key);
                QCOMPARE(user.opened(), shown);
            }
            user.presses("Ctrl+F");
            QVERIFY(user.forms.find != nullptr);
            user.clicks("Plant.FLOOR1");
            user.presses("Tab Home");
            user.desktop.willAnswer({Answer::yes});
            user.presses("Ctrl+A Ctrl+X");
            QCOMPARE(user.desktop.messages().back(),
                     "Are you sure you want to delete the selected items ? [No]");
            user.desktop.willAnswer({Answer::yes});
            user.desktop.willChoose("/other.xml");
            user.presses("Ctrl+S Ctrl+Shift+S");
            QVERIFY(user.disk.files.contains("/other.xml"));
            user.presses("Ctrl+O");
            QVERIFY(user.desktop.lastChooser.starts_with("Open as existing configuration"));
            user.presses("Ctrl+N");
            QCOMPARE(user.document.items().count(), 0U);
        }
    }

    static void rowsAreSelectedByMouseAndKeyboard() {
        WindowUser user(twoFloors());
        user.entry("mnuIcon").trigger();  // has no effect before the first click on a node
        QVERIFY(user.report() != nullptr);
        user.clicks("Plant.FLOOR2");
        user.presses("Tab Home");
        QCOMPARE(user.shownRows(), "*Light1");  // of a single row too
        user.clicks("Plant.FLOOR1");
        const QSignalSpy chosen(&user.list, SIGNAL(rowClicked()));
        user.presses("Tab");
        QCOMPARE(user.keyboard(), "list");
        const QRect first = user.rows().visualRect(user.rows().model()->index(0, 0));
        QCOMPARE(first.left(), 0);
        user.presses("Down");
        QCOMPARE(user.shownRows(), "*Text1 Text2_of_a_long_name Text3");
        const QPoint beside(20, user.rows().viewport()->height() - 2);
        user.clicks(user.rows(), beside, Qt::RightButton);
        QVERIFY(!user.menu().contains("Properties"));
        user.clicks("Plant.FLOOR1");
        user.clicks(user.rows(), beside);
        user.presses("Ctrl+A");
        QCOMPARE(user.shownRows(), "*Text1 *Text2_of_a_long_name *Text3");
        QVERIFY(user.button("copy").isEnabled());
        user.clicks(user.rows(), user.spotOnRow(1) + QPoint(user.list.width() / 2, 0));
        user.clicks(0, Qt::LeftButton, Qt::ShiftModifier);
        user.form.ListView1.sortBy(0);
        QCOMPARE(user.shownRows(), "*Text1 *Text2_of_a_long_name Text3");
        user.clicks(0);
        user.presses("Ctrl+A Home");
        user.clicks(2, Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(user.shownRows(), "*Text1 Text2_of_a_long_name *Text3");
        user.clicks(0, Qt::RightButton);
        QVERIFY(user.menu().startsWith("*Properties") && user.shownRows().count('*') == 2);
        QCOMPARE(chosen.size(), 10);
        user.presses("F2");
        QCOMPARE(user.opened(), "Text1");
        const QSize size = user.window.size();
        for (const char* mode : {"icon", "smallicon", "list"}) {
            user.button(mode).click();
            QCoreApplication::processEvents();
            const QString rows = user.shownRows();
            QCOMPARE(rows, QString(mode) == "icon"
                               ? "*EIS5:Text1 EIS10_S:Text2_of_a_long_name *EIS11_S:Text3"
                               : "*Text1 Text2_of_a_long_name *Text3");
            const auto placeOf = [&](int row) {
                return user.rows().visualRect(user.rows().model()->index(row, 0));
            };
            const QSize cell = placeOf(0).size();
            QCOMPARE(placeOf(1).topLeft() - placeOf(0).topLeft(),
                     QString(mode) == "list" ? QPoint(0, cell.height()) : QPoint(cell.width(), 0));
            QVERIFY(cell.width() > 20 * user.list.fontMetrics().averageCharWidth());
            const auto& view = dynamic_cast<QListView&>(user.rows());
            const int lines = view.viewMode() == QListView::IconMode ? 2 : 0;  // below the icon
            const int line = user.list.fontMetrics().height();
            const int least = view.iconSize().height() + lines * line;
            QVERIFY(cell.height() >= least && cell.height() < least + line);
            QVERIFY(view.movement() == QListView::Static && user.keyboard() == "list");
            QCOMPARE(lines > 0, QString(mode) == "icon");
            QCOMPARE(view.iconSize() != user.tree.iconSize(), QString(mode) == "icon");
            const QFont font = user.list.font();
            user.list.setFont(QFont(font.family(), 2 * font.pointSize()));
            QVERIFY(placeOf(0).height() > cell.height() && placeOf(0).width() > cell.width());
            user.list.setFont(font);
            user.window.resize(1, 1);
            QCoreApplication::processEvents();
            QCOMPARE(user.shownRows(), rows);
            QCOMPARE(placeOf(2).x(), placeOf(0).x());  // in a second row or the same column
            user.window.resize(size);
            QCoreApplication::processEvents();
        }
        user.clicks(1, Qt::RightButton);
        QCOMPARE(user.menu(),
                 "*Properties, Copy, Cut, Delete Object, Paste Item names from Clipboard, "
                 "Paste Item comments from Clipboard, Copy as Table, Sort by Item Name, Sort by "
                 "Comment, Sort by Datatype, Sort by Address (Hex), Sort by Access Rights, Sort by "
                 "Index");
        QCOMPARE(user.shownRows(), "Text1 *Text2_of_a_long_name Text3");
        user.entry("mnuReport").trigger();
        QCOMPARE(user.rows().visualRect(user.rows().model()->index(0, 0)), first);
        user.drags(user.rows(), user.spotOnRow(0), user.spotOnRow(2), Qt::RightButton);
        QCOMPARE(user.shownRows(), "*Text1 Text2_of_a_long_name Text3");
        user.presses("Down Menu");
        QVERIFY(user.menu().startsWith("*Properties"));
        user.presses("Return");
        QCOMPARE(user.opened(), "Text2_of_a_long_name");
        user.desktop.willAnswer({Answer::no});
        user.presses("Del");
        QCOMPARE(user.desktop.messages().back(),
                 "Are you sure you want to delete the selected items ? [No]");

        const auto clicksTitle = [&](int column) {
            QHeaderView* header = user.report()->header();
            user.clicks(*header, {header->sectionViewportPosition(column) + 20, 9});
            return header->sortIndicatorSection() * 10 + header->sortIndicatorOrder();
        };
        QCOMPARE(clicksTitle(2), 20);  // ascending
        QCOMPARE(clicksTitle(2), 20);
        QCOMPARE(user.shownRows(), "Text1 *Text2_of_a_long_name Text3");
        user.clicks("config");
        user.entry("mnuSmallIcon").trigger();
        user.clicks("Plant.FLOOR1");
        QVERIFY(user.report()->header()->isSortIndicatorShown());
        QHeaderView& header = *user.report()->header();
        const QPoint border(header.sectionViewportPosition(1), 9);
        user.drags(header, border, border + QPoint(user.list.width() / 5, 0));
        QVERIFY(user.columns().startsWith("Item Name 4, "));
        const QByteArray wider = header.saveState();
        const QString columns = user.columns();
        for (const QSize now : {2 * size, QSize(1, 1), QSize(1, 2 * size.height()), size}) {
            user.window.resize(now);
            QCoreApplication::processEvents();
            QCOMPARE(user.disagreement(), "");
            QVERIFY(now.width() == 1 || user.columns() == columns);
            QVERIFY(user.list.font().pointSizeF() >= 7);
            QCOMPARE(user.report()->iconSize(), user.tree.iconSize());
        }
        QCOMPARE(header.saveState(), wider);
        user.entry("mnuCloseCfg").trigger();
        QVERIFY(!user.tree.isVisible() && !user.list.isVisible());
    }

    /// Only by Escape and the button of its panel, once that is shown.
    static void loadingIsCancelledByItsPanel() {
        for (const bool byKey : {false, true}) {
            WindowUser user(twoFloors());
            auto& panel = *user.window.findChild<QFrame*>("pnlImpStat");
            auto& cancel = *panel.findChild<QPushButton*>("cmdCancel");
            const QMenuBar& menus = *user.window.menuBar();
            QWindow* const window = user.window.windowHandle();
            // Input as from a desktop, which the editor processes when it allows that.
            using Input = QWindowSystemInterface;
            const auto clicks = [&](QPoint place, int key = 0) {
                for (const auto held : {Qt::LeftButton, Qt::NoButton})
                    Input::handleMouseEvent(window, place, window->mapToGlobal(place), held,
                                            Qt::LeftButton,
                                            held == Qt::NoButton ? QEvent::MouseButtonRelease
                                                                 : QEvent::MouseButtonPress);
                Input::handleKeyEvent(window, QEvent::KeyPress, key, {});
                QTest::qSleep(50);
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            };
            const QPoint about = menus.actionGeometry(&user.entry("mnuAbout")).center();
            bool isFirst = true;
            user.desktop.onPendingEvents = [&] {
                if (!std::exchange(isFirst, false)) return;
                const QPoint middle = cancel.mapTo(&user.window, cancel.rect().center());
                const QSize size = panel.size();
                clicks(middle, Qt::Key_Escape);
                QVERIFY(panel.isVisible() && !cancel.isVisible());
                user.form.loadingTakesLong();
                user.form.pnlImpStat.progress = 42;
                clicks(about, Qt::Key_F10);
                QVERIFY(cancel.isVisible() && !cancel.hasFocus() && panel.size() == size);
                const auto& bar = *panel.findChild<QProgressBar*>();
                QCOMPARE(panel.accessibleName() + bar.accessibleName() + cancel.text(),
                         "LoadingProgress of loadingCancel");
                QVERIFY(bar.value() == 42 && bar.maximum() == 99 && !bar.isTextVisible());
                QVERIFY(panel.findChild<QLabel*>()->alignment() == Qt::AlignCenter &&
                        panel.frameWidth() > 0);
                QVERIFY(qAbs(cancel.geometry().center().x() - panel.rect().center().x()) < 2);
                expectValidLayout(panel);
                clicks(byKey ? about : middle, byKey ? Qt::Key_Escape : Qt::Key_F10);
            };
            user.openText(twoFloors());
            QVERIFY(!isFirst && !user.document.open && !panel.isVisible());
            QVERIFY(user.forms.aboutShown == 0 && QApplication::activePopupWidget() == nullptr);
        }
    }

    /// Exactly one file of a known type, and only with the copy action.
    static void filesAreDroppedOnTheWindow() {
        WindowUser user(twoFloors());
        user.disk.files["/other.xml"] = configuration(plc("Other"));
        const QUrl file = QUrl::fromLocalFile("/other.xml");
        const auto isTaken = [&](const QList<QUrl>& files, Qt::DropActions offered) {
            QMimeData content;
            content.setUrls(files);
            QDragEnterEvent enters({90, 90}, offered, &content, Qt::LeftButton, Qt::ShiftModifier);
            QDropEvent drops({90, 90}, offered, &content, Qt::LeftButton, Qt::ShiftModifier);
            QCoreApplication::sendEvent(user.window.windowHandle(), &enters);
            if (!enters.isAccepted()) return false;
            QCoreApplication::sendEvent(user.window.windowHandle(), &drops);
            QCoreApplication::processEvents();
            return enters.dropAction() == Qt::CopyAction && drops.dropAction() == Qt::CopyAction &&
                   drops.isAccepted();
        };
        QVERIFY(!isTaken({file}, Qt::MoveAction));
        QVERIFY(!isTaken({QUrl::fromLocalFile("/other.txt")}, Qt::CopyAction));
        QVERIFY(!isTaken({file, file}, Qt::CopyAction));
        QVERIFY(isTaken({file}, Qt::CopyAction | Qt::MoveAction));
        QCOMPARE(user.shownTree(), "*/other.xml[Other]");
    }

    static void longTextsAreCutInCellsAndCompleteInTooltips() {
        WindowUser user(twoFloors());
        user.document.setComment(user.document.tree().nodeAt("Plant.FLOOR2.Light1"),
                                 "<b>" + std::string(12'000, 'c'));
        user.clicks("Plant.FLOOR2");
        const QModelIndex cell = user.rows().model()->index(0, 1);
        QCOMPARE(cell.data().toString().size(), 1'001);
        const auto tip = [&](QAbstractItemView& view, const QModelIndex& index) {
            return tooltipAt(*view.viewport(), WindowUser::spotOn(view, index));
        };
        QCOMPARE(tip(user.rows(), cell.siblingAtColumn(0)), "");
        const QString comment = tip(user.rows(), cell);
        QVERIFY(
            comment.startsWith("'<': the OPC server cannot read a file that holds this\n<b>cccc"));
        QCOMPARE(comment.count('c'), 4'998);  // of 5,000 characters, and the one in "cannot"
        const QRegularExpression tooLong("[^\\s\u200B]{41}");
        QVERIFY(comment.endsWith(QChar(0x2026)) && !comment.contains(tooLong));
        QCOMPARE(tip(user.tree, user.tree.currentIndex()), "");
        user.tree.setGeometry(0, 40, 90, 400);
        QCOMPARE(tip(user.tree, user.tree.currentIndex()), "FLOOR2");
    }

    /// With all group addresses of a bus, and the deepest nesting.
    static void fullBusAndDeepNestingAreShownQuickly() {
        constexpr int count = 65'536;
        std::string items;
        for (int i = 0; i < count; ++i)
            items += tag("Item" + std::to_string(i * 7919 % count));  // unsorted
        std::string deep = tag("End");
        for (int level = 0; level < 1'000; ++level)  // the limit
            deep = branch("B", deep);
        WindowWorld world;
        const std::string text = configuration(plc("Bus", branch("ALL", items) + deep));
        world.desktop.onPendingEvents = [] { QCoreApplication::processEvents(); };

        // Processor time in seconds, independent of other programs.
        const auto painted = [&](const std::function<void()>& act) {
            const std::clock_t start = std::clock();
            act();
            QCoreApplication::processEvents();
            world.window.grab();
            return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        };
        const double opening = painted([&] { world.openText(text); });
        const double click = painted([&] { world.clicks("Bus.ALL"); });
        qInfo("opening: %.3f s, node click: %.3f s", opening, click);
        QCOMPARE(world.rows().model()->rowCount(), count);
#ifdef NDEBUG  // promised for release builds
        QVERIFY(opening < 3.0 && click < 0.6);
#endif
        QTest::keyClick(&world.tree, Qt::Key_End);
        QCOMPARE(world.names(), QString("End"));
        world.window.grab();
        world.entry("mnuCloseCfg").trigger();
        QVERIFY(!world.tree.isVisible() && world.window.close());
    }
};

std::unique_ptr<QObject> mainWindowTest() { return std::make_unique<MainWindowTest>(); }

#include "MainWindowTest.moc"
