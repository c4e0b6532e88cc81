// What the user does with the main window, by mouse and keyboard.
#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextDocumentFragment>
#include <QToolBar>
#include <QToolTip>
#include <algorithm>

#include "qt/WindowWorld.h"

namespace {

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// "Plant[Light1 FLOOR1[Text1]]": the nodes below one, as far as they lie open.
QString shownBelow(const QTreeView& view, const QModelIndex& parent) {
    QStringList texts;
    for (int row = 0; row < view.model()->rowCount(parent); ++row) {
        const QModelIndex index = view.model()->index(row, 0, parent);
        const QString below = view.isExpanded(index) ? shownBelow(view, index) : QString();
        texts.append(index.data().toString() + (below.isEmpty() ? "" : "[" + below + "]"));
    }
    return texts.join(' ');
}

/// "Plc Name 0.5, ...": the columns' headers and widths, as fractions of the list's.
QString columnsOf(const WindowWorld& world) {
    QStringList columns;
    for (int i = 0; i < world.rows().model()->columnCount(); ++i) {
        const double fraction = 1.0 * world.report()->columnWidth(i) / world.list.width();
        columns.append(world.rows().model()->headerData(i, Qt::Horizontal).toString() +
                       QString(" %1").arg(fraction, 0, 'f', 1));
    }
    return columns.join(", ");
}

/// A configuration of two branches is open; whatever happens, both item models keep the rules of
/// such models.
class TwoFloors : public WindowWorld {
 public:
    TwoFloors() {
        const std::string texts = tag("Text1") + tag("Text2") + tag("Text3");
        openText(
            configuration(plc("Plant", branch("FLOOR1", texts) + branch("FLOOR2", tag("Light1")))));
    }

 private:
    static constexpr auto failing = QAbstractItemModelTester::FailureReportingMode::QtTest;
    QAbstractItemModelTester treeTester_{tree.model(), failing};
    QAbstractItemModelTester listTester_{rows().model(), failing};
};

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void sampleIsShownAndSavedByteForByte() {
        const QTemporaryDir folder;
        const QString path = folder.filePath("house.xml");
        QVERIFY(QFile::copy(SAMPLES_DIR "/house.xml", path));
        const QByteArray sample = bytesOf(path);
        const auto disk = systemDisk();
        WindowWorld world(disk.get());
        QVERIFY(!world.tree.isVisible() && !world.list.isVisible());

        world.open(fromQt(path));
        QVERIFY(world.tree.isVisible() && world.list.isVisible());
        int rows = 0;
        for (auto row = world.tree.model()->index(0, 0); row.isValid();
             row = world.tree.indexBelow(row))
            ++rows;
        QCOMPARE(rows, 1 + 4 + 36 + 150);
        QCOMPARE(columnsOf(world), QString("Plc Name 0.5, Port 0.2, EDI Type 0.3"));
        QCOMPARE(world.names(), QString("Cellar_Line Garden_Line House_Line Office_Line"));
        QCOMPARE(world.column(1).join(' '), QString("COM2 COM3 COM1 USB"));
        QCOMPARE(world.column(2).join(' '), QString("PEI10x19200 PEI16x9600 PEI16x9600 USBCOMMON"));

        world.clickNode("Cellar_Line.BOILER_ROOM");
        QCOMPARE(columnsOf(world), QString("Item Name 0.2, Comment 0.3, Datatype 0.2, "
                                           "Address (Hex) 0.3, Access Rights 0.2, Index 0.3"));
        QCOMPARE(world.column(0).size(), 11);
        QStringList firstRow;
        for (int column = 0; column < 6; ++column)
            firstRow.append(world.column(column).front());
        QCOMPARE(firstRow.join('|'), QString("Boiler_Fault|St\u00f6rmeldung Heizkessel, 1 = "
                                             "St\u00f6rung|EIS1|10/1/1|READ|5101"));

        for (const char* saving : {"first", "second"}) {
            world.desktop.willAnswer({Answer::yes});
            world.button("save").click();
            QCOMPARE(world.desktop.messages().back(), fromQt(path) + " saved");
            QVERIFY2(bytesOf(path) == sample, saving);
        }
    }

    static void everyWayToChooseANodeIsANodeClick() {
        TwoFloors world;
        const QString texts("Text1 Text2 Text3");
        world.clickNode("Plant.FLOOR1");
        QCOMPARE(world.names(), texts);

        QTest::keyClick(&world.tree, Qt::Key_Home);
        QCOMPARE(world.names(), QString("Plant"));
        QTest::keyClick(&world.tree, Qt::Key_Down);
        QCOMPARE(world.names(), QString());
        QTest::keyClick(&world.tree, Qt::Key_Down);
        QCOMPARE(world.names(), texts);

        const auto drag = [&](const char* from, const char* to) {
            QTest::mousePress(world.tree.viewport(), Qt::LeftButton, {}, world.spotOnNode(from));
            QTest::mouseMove(world.tree.viewport(), world.spotOnNode(to));
            QTest::mouseRelease(world.tree.viewport(), Qt::LeftButton, {}, world.spotOnNode(to));
        };
        drag("Plant.FLOOR1", "Plant.FLOOR2");
        QCOMPARE(world.selectedNode(), QString("FLOOR2"));
        QCOMPARE(world.names(), QString("Light1"));
        // Pressed on another node, then back to the one that was selected before.
        world.entry("mnuIcon").trigger();
        drag("Plant.FLOOR1", "Plant.FLOOR2");
        QCOMPARE(world.selectedNode(), QString("FLOOR2"));
        QVERIFY(world.report());

        // Whichever button selects a node, the list shows that node.
        QTest::mouseClick(world.tree.viewport(), Qt::RightButton, {},
                          world.spotOnNode("Plant.FLOOR1"));
        QCOMPARE(world.names(), world.selectedNode() == "FLOOR1" ? texts : QString("Light1"));

        // A double click opens the node's properties, and neither folds nor unfolds it.
        QString opened;
        world.forms.whenShown<frmBranch>([&](frmBranch&) { opened = world.selectedNode(); });
        doubleClick(world.tree, world.spotOnNode("Plant.FLOOR1"));
        QCOMPARE(opened, QString("FLOOR1"));
        QVERIFY(world.document.tree().FindNode("Plant.FLOOR1")->expanded());
    }

    static void whatChoosesNoNodeIsNoNodeClick() {
        TwoFloors world;
        const auto isExpanded = [&](const char* key) {
            return world.document.tree().FindNode(key)->expanded();
        };
        world.clickNode("Plant.FLOOR1");
        const QSignalSpy refills(world.rows().model(), &QAbstractItemModel::modelReset);

        const QPoint box = world.spotOnNode("Plant.FLOOR2") - QPoint(world.tree.indentation(), 0);
        QTest::mouseClick(world.tree.viewport(), Qt::LeftButton, {}, box);
        QVERIFY(!isExpanded("Plant.FLOOR2"));
        QTest::keyClick(&world.tree, Qt::Key_Left);
        QVERIFY(!isExpanded("Plant.FLOOR1"));
        QCOMPARE(world.selectedNode(), QString("FLOOR1"));

        // The list's double click shows the row's node in the tree, where it was folded away.
        QString opened;
        world.forms.whenShown<frmItems>([&](frmItems&) { opened = world.selectedNode(); });
        doubleClick(world.rows(), world.spotOnRow(1));
        QCOMPARE(opened, QString("Text2"));
        QVERIFY(isExpanded("Plant.FLOOR1"));

        // Beside and below the nodes there is nothing to select; the selected node stays what it
        // is. So it does when a modifier key would take it out of a selection of several.
        const QPoint node = world.spotOnNode("Plant.FLOOR1.Text2");
        const QPoint beside(world.tree.viewport()->width() - 2, node.y());
        const QPoint below(node.x(), world.tree.viewport()->height() - 2);
        for (const QPoint& spot : {beside, below}) {
            QVERIFY(!world.tree.indexAt(spot).isValid());
            QTest::mouseClick(world.tree.viewport(), Qt::LeftButton, {}, spot);
            QCOMPARE(world.selectedNode(), QString("Text2"));
        }
        QCOMPARE(refills.count(), 0);
        QTest::mouseClick(world.tree.viewport(), Qt::LeftButton, Qt::ControlModifier, node);
        QCOMPARE(world.selectedNode(), QString("Text2"));
    }

    static void treeFollowsEveryChange() {
        TwoFloors world;
        ConfigTree& tree = world.document.tree();
        const auto expect = [&](const QString& selected, const QString& nodes) {
            const QModelIndex top = world.tree.model()->index(0, 0);
            QCOMPARE(shownBelow(world.tree, top), nodes);
            QCOMPARE(world.selectedNode(), selected);
            QCOMPARE(selected, tree.selected() == nullptr ? "none" : toQt(tree.selected()->text()));
        };
        world.clickNode("Plant.FLOOR1.Text3");
        const QSignalSpy repaints(world.tree.model(), &QAbstractItemModel::dataChanged);
        tree.setText(tree.nodeAt("Plant.FLOOR1.Text1"), "Zebra");
        tree.setText(tree.nodeAt("Plant.FLOOR1.Text3"), "Ant");
        tree.setText(tree.nodeAt("Plant.FLOOR1"), "HALL");
        tree.setKey(tree.nodeAt("Plant.FLOOR1.Text3"), "Plant.FLOOR1.Ant");
        expect("Ant", "Plant[HALL[Zebra Text2 Ant] FLOOR2[Light1]]");
        QCOMPARE(repaints.count(), 3);
        for (const char* key : {"Plant.FLOOR1", "Plant"})
            tree.sortChildren(tree.nodeAt(key));
        expect("Ant", "Plant[FLOOR2[Light1] HALL[Ant Text2 Zebra]]");

        tree.ensureVisible(tree.AddNode("config", "Roof", "Roof", NodeKind::plc));
        tree.ensureVisible(tree.AddNode("Roof", "Roof.Fan", "Fan", NodeKind::item));
        {
            const ConfigTree::BulkChange bulk(tree);
            tree.ensureVisible(tree.AddNode("Roof", "Roof.Pump", "Pump", NodeKind::item));
        }
        expect("Ant", "Plant[FLOOR2[Light1] HALL[Ant Text2 Zebra]] Roof[Fan Pump]");

        tree.remove(tree.nodeAt("Plant.FLOOR1.Ant"));  // the selected one: its sibling follows
        expect("Text2", "Plant[FLOOR2[Light1] HALL[Text2 Zebra]] Roof[Fan Pump]");
        tree.remove(tree.nodeAt("Plant.FLOOR1"));  // above the selected one
        expect("FLOOR2", "Plant[FLOOR2[Light1]] Roof[Fan Pump]");
        tree.remove(tree.nodeAt("Roof"));
        expect("FLOOR2", "Plant[FLOOR2[Light1]]");
        tree.remove(*tree.root());
        expect("none", "");
    }

    static void partsFollowTheWindow() {
        TwoFloors world;
        world.clickNode("Plant.FLOOR1");
        const QWidget& area = *world.window.centralWidget();
        const auto& toolbar = *world.window.findChild<QToolBar*>("Toolbar1");
        const QWidget* const parts[] = {&toolbar, &world.tree, &world.list};
        const auto shape = [&] {
            QString text;
            for (const QWidget* part : parts)
                QDebug(&text) << part->geometry() << part->font().pointSizeF();
            return text + QString::number(toolbar.iconSize().height());
        };
        const auto resized = [&](QSize size) {
            world.window.resize(size);
            QCoreApplication::processEvents();
        };
        const QSize reference = world.window.size();
        const QSize referenceArea = area.size();
        const QString before = shape();
        const double font = world.tree.font().pointSizeF();
        for (const double factor : {0.5, 2.0, 1.3}) {
            resized(reference * factor);
            for (const QWidget* part : parts) {
                QVERIFY2(area.rect().contains(part->geometry()), qPrintable(shape()));
                QVERIFY(part->width() > 0.3 * area.width());
            }
            QCOMPARE(world.tree.geometry().bottom(), world.list.geometry().bottom());
            QVERIFY(area.height() - world.tree.geometry().bottom() <= 3);
            for (const QToolButton* button : toolbar.findChildren<QToolButton*>()) {
                if (!button->isVisible()) continue;
                QVERIFY(toolbar.rect().contains(button->geometry()));
                QVERIFY(button->width() >= toolbar.iconSize().width());
            }
            QVERIFY(world.report()->font().pointSizeF() >= 7);  // to be read
        }
        // A font follows the direction in which the window grew least.
        resized({reference.width() * 2, reference.height()});
        QCOMPARE(area.height(), referenceArea.height());
        QCOMPARE(world.tree.font().pointSizeF(), font);

        resized(reference);
        QCOMPARE(shape(), before);
        world.window.showMinimized();
        world.window.showNormal();
        resized(reference);
        QCOMPARE(shape(), before);
    }

    /// The widths count of rows that are out of sight too: else, at some heights, a scroll bar that
    /// hides the widest row takes the reason for itself away, for ever.
    static void treeIsAsWideAsItsWidestOpenRow() {
        TwoFloors world;
        ConfigTree& tree = world.document.tree();
        const auto expectWidth = [&](const char* widest) {
            QCoreApplication::processEvents();
            int needed = 0;
            for (auto row = world.tree.model()->index(0, 0); row.isValid();
                 row = world.tree.indexBelow(row))
                needed = std::max(needed, world.tree.visualRect(row).left() +
                                              world.tree.sizeHintForIndex(row).width() +
                                              world.tree.horizontalScrollBar()->value());
            const int width = world.tree.header()->sectionSize(0);
            QVERIFY2(width >= needed && width < needed + 20,
                     qPrintable(QString("%1: %2 for %3").arg(widest).arg(width).arg(needed)));
        };
        expectWidth("any");
        Node& text = tree.nodeAt("Plant.FLOOR1.Text2");
        const std::string name(60, 'W');
        tree.setText(text, name);
        expectWidth("changed");
        const int height = world.tree.sizeHintForRow(0);
        for (int rows = 2; rows < 12; ++rows)
            for (int pixels = 0; pixels < height; ++pixels) {
                world.tree.resize(200, rows * height + pixels);
                expectWidth("at any height");
            }
        tree.setExpanded(tree.nodeAt("Plant.FLOOR1"), true);
        world.tree.collapse(qobject_cast<TreeModel*>(world.tree.model())->indexOf(text.parent()));
        expectWidth("closed");
        world.tree.expandAll();
        expectWidth("opened");
        tree.setText(text, "i");
        expectWidth("another one");
        tree.AddNode("Plant.FLOOR2", "Plant.FLOOR2.W", name + "\u0416", NodeKind::item);
        expectWidth("added");
        world.window.setFont(QFont(world.tree.font().family(), 20));
        world.tree.setFont(QFont(world.tree.font().family(), 20));
        expectWidth("in another font");
        tree.remove(tree.nodeAt("Plant.FLOOR2"));
        expectWidth("gone");
    }

    static void keysAndContextMenusDoWhatFits() {
        TwoFloors world;
        QGuiApplication::clipboard()->setText("names");
        const auto entries = [&] {
            QStringList texts;
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu == nullptr) return QString("none");
            for (const QAction* action : menu->actions())
                if (action->isEnabled() && !action->isSeparator())
                    texts.append(action->text().remove('&'));
            menu->close();
            return texts.join(", ");
        };
        int opened = 0;
        world.forms.whenShown<frmBranch>([&](frmBranch&) { ++opened; });
        QTest::mouseClick(world.tree.viewport(), Qt::RightButton, {},
                          world.spotOnNode("Plant.FLOOR1"));
        const QString ofBranch =
            "Properties, Add Branch, Add Item, Paste, Delete Object, Take to move, Take to copy";
        QCOMPARE(entries(), ofBranch);
        QTest::keyClick(&world.tree, Qt::Key_F2);
        QCOMPARE(opened, 1);
        QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, {}, {});
        QCoreApplication::sendEvent(world.tree.viewport(), &menuKey);
        QCOMPARE(entries(), ofBranch);
        QTest::keySequence(&world.tree, QKeySequence::Copy);

        for (const char* mode : {"mnuReport", "mnuIcon"}) {
            world.entry(mode).trigger();
            QVERIFY(world.entry(mode).isChecked());
            QTest::mouseClick(world.rows().viewport(), Qt::RightButton, {}, world.spotOnRow(1));
            QCOMPARE(entries(), QString("Properties, Copy, Cut, Delete Object, Paste Item names "
                                        "from Clipboard, Paste Item comments from Clipboard, Sort "
                                        "by Item Name, Sort by Comment, Sort by Datatype, Sort by "
                                        "Address (Hex), Sort by Access Rights, Sort by Index"));
        }
        QVERIFY(world.button("icon").isChecked() && !world.button("report").isChecked());
        world.clickNode("config");
        QVERIFY(world.button("report").isChecked());
        world.clickRow(0);
        QTest::keySequence(&world.rows(), QKeySequence::Copy);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("names"));

        world.desktop.willAnswer({Answer::yes});
        QTest::keySequence(&world.window, QKeySequence::Save);
        QVERIFY(QString::fromStdString(world.desktop.messages().back()).endsWith(" saved"));
    }

    static void longTextsAreCutInCellsAndWholeInTooltips() {
        TwoFloors world;
        const std::string comment = std::string(2'000, 'c') + "<b>";
        world.document.items().at("Plant.FLOOR2.Light1")->sComment = comment;
        world.clickNode("Plant.FLOOR2");
        const QModelIndex cell = world.rows().model()->index(0, 1);
        QCOMPARE(cell.data().toString().size(), 1'001);
        const auto tooltipAt = [](QAbstractItemView& view, const QModelIndex& index) {
            const QPoint spot = WindowWorld::spotOn(view, index);
            QHelpEvent hover(QEvent::ToolTip, spot, view.viewport()->mapToGlobal(spot));
            QCoreApplication::sendEvent(view.viewport(), &hover);
            const QString tip = QToolTip::text();
            return QTextDocumentFragment::fromHtml(tip).toPlainText().remove(QChar(0x200B));
        };
        QCOMPARE(tooltipAt(world.rows(), cell.siblingAtColumn(0)), QString());
        const QString tip = tooltipAt(world.rows(), cell);
        QVERIFY(tip.startsWith("'<'") && tip.endsWith(toQt("\n" + comment)));
        world.tree.setGeometry(0, 40, 90, 400);
        QCOMPARE(tooltipAt(world.tree, world.tree.currentIndex()), QString("FLOOR2"));
    }

    static void viewModesShareTheSelection() {
        TwoFloors world;
        world.entry("mnuIcon").trigger();  // waits for the first node click
        QVERIFY(world.report());

        world.clickNode("Plant.FLOOR1");
        world.clickRow(0);
        world.clickRow(2, Qt::ControlModifier);
        for (const char* mode : {"icon", "smallicon", "list"}) {
            world.button(mode).click();
            const auto* view = qobject_cast<QListView*>(&world.rows());
            QVERIFY(view);
            QCOMPARE(view->viewMode() == QListView::IconMode, std::string(mode) == "icon");
            QCOMPARE(world.selectedNames(), QString("Text1 Text3"));
        }
        world.clickRow(1);
        world.entry("mnuReport").trigger();
        QVERIFY(world.report());
        QCOMPARE(world.selectedNames(), QString("Text2"));
        const auto& rows = world.form.ListView1.rows();  // the rules know of the same selection
        QCOMPARE(std::ranges::count_if(rows, &ListView::Row::selected), 1);

        world.entry("mnuList").trigger();
        world.clickNode("Plant.FLOOR2");
        QVERIFY(world.report());
        QCOMPARE(world.selectedNames(), QString());
    }

    static void headerSortsAscendingAndKeepsTheSelection() {
        const auto disk = systemDisk();
        WindowWorld world(disk.get());
        world.open(SAMPLES_DIR "/house.xml");
        world.clickNode("Cellar_Line.BOILER_ROOM");
        world.clickRow(1);
        world.clickRow(6, Qt::ControlModifier);

        constexpr int datatype = 2;
        QStringList sorted = world.column(datatype);
        sorted.sort();
        QVERIFY(sorted != world.column(datatype));
        QHeaderView* header = world.report()->header();
        const QPoint spot(header->sectionViewportPosition(datatype) + 20, header->height() / 2);
        for (const char* click : {"first", "second"}) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, spot);
            QVERIFY2(world.column(datatype) == sorted, click);
            QCOMPARE(world.selectedNames(), QString("Boiler_Flow_Temp Controller_Raw"));
            QCOMPARE(world.column(0)[world.rows().currentIndex().row()], QString("Controller_Raw"));
            QCOMPARE(world.form.ListView1.selectedRow()->text, std::string("Controller_Raw"));
        }
        // Whatever is clicked afterwards is sorted by that column, also where it has none.
        world.entry("mnuIcon").trigger();
        world.clickNode("Cellar_Line.Coupler_Alive");
        world.clickNode("config");
        world.clickNode("Cellar_Line.HOBBY_ROOM");
        QVERIFY(std::ranges::is_sorted(world.column(datatype)));
        QVERIFY(world.report()->header()->isSortIndicatorShown());
        world.entry("mnuNewCfg").trigger();
        world.clickNode("config");
        QVERIFY(!world.report()->header()->isSortIndicatorShown());
    }

    static void closingAsksAndStaysWhenTheSavingFails() {
        WindowWorld world;
        const QSignalSpy ends(&world.window, &MainWindow::applicationEnded);
        world.disk.writeFault = ErrorNumber::diskFull;
        world.entry("mnuNewCfg").trigger();
        world.desktop.willAnswer({Answer::yes});
        QVERIFY(!world.window.close());
        QVERIFY(world.window.isVisible() && world.tree.isVisible());
        QCOMPARE(world.selectedNode(), toQt(world.document.currentPath()));

        world.desktop.willAnswer({Answer::no});
        QVERIFY(world.window.close());
        QVERIFY(!world.window.isVisible() && world.disk.files.empty());
        QCOMPARE(ends.count(), 1);
        QCOMPARE(ends.front().front().toInt(), 0);
        QCOMPARE(world.desktop.answersLeft(), std::size_t{0});
    }
};

std::unique_ptr<QObject> mainWindowTest() { return std::make_unique<MainWindowTest>(); }

#include "MainWindowTest.moc"
