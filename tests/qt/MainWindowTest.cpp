// What the user does with the main window, by mouse and keyboard.
#include <QClipboard>
#include <QHeaderView>
#include <QSignalSpy>
#include <QToolBar>
#include <regex>

#include "qt/Approved.h"
#include "qt/Diary.h"

namespace {

std::string typed(const std::string& name, const std::string& type) {
    return std::regex_replace(tag(name), std::regex("EIS1"), type);
}

std::string twoFloors() {
    const std::string texts =
        typed("Text1", "EIS5") + typed("Text2", "EIS10_S") + typed("Text3", "EIS11_S");
    return configuration(plc("Plant", branch("FLOOR1", texts) + branch("FLOOR2", tag("Light1"))) +
                         plc("Annex", tag("Door")));
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    /// Else, at some heights, a scroll bar that hides the widest row takes the reason for itself
    /// away, and the window hangs.
    static void treeIsEquallyWideAtAnyHeight() {
        Diary diary(twoFloors());
        Node& node = diary.document.tree().nodeAt("Plant.FLOOR1.Text2");
        diary.document.tree().setText(node, std::string(60, 'W'));
        const int row = diary.tree.sizeHintForRow(0);
        std::set<int> widths;
        for (int height = 2 * row; height < 12 * row; ++height) {
            diary.tree.resize(200, height);
            QCoreApplication::processEvents();
            widths.insert(diary.tree.header()->sectionSize(0));
        }
        QCOMPARE(widths.size(), 1U);
        QVERIFY(*widths.begin() > 200);
    }

    static void nodesAreChosenByHand() {
        Diary diary(twoFloors());
        const QTreeView& tree = diary.tree;
        const QWidget& viewport = *tree.viewport();
        diary.clicks("Plant.FLOOR1");
        for (const char* key : {"Home", "Down", "Down", "Down"})
            diary.presses(key);
        const auto drags = [&](const char* from, const char* to) {
            diary.does(QString("presses on %1, lets go on %2").arg(from, to), [&] {
                QTest::mousePress(tree.viewport(), Qt::LeftButton, {}, diary.spotOnNode(from));
                QTest::mouseMove(tree.viewport(), diary.spotOnNode(to));
                QTest::mouseRelease(tree.viewport(), Qt::LeftButton, {}, diary.spotOnNode(to));
            });
        };
        drags("Plant.FLOOR1", "Plant.FLOOR2");
        diary.chooses("mnuIcon");
        drags("Plant.FLOOR1", "Plant.FLOOR2");  // back to the one that was selected before
        diary.clicks("Plant.FLOOR1", Qt::RightButton);
        QGuiApplication::clipboard()->setText("names");
        for (const char* key : {"F2", "Return", "Menu", "Ctrl+C"})
            diary.presses(key);
        diary.does("double-clicks FLOOR2", [&] { diary.openNode("Plant.FLOOR2"); });

        // What chooses no node: boxes, and what is beside and below the nodes.
        const QPoint node = diary.spotOnNode("Plant.FLOOR1");
        diary.clicks("the box of FLOOR1", tree, node - QPoint(tree.indentation(), 0));
        diary.clicks("beside FLOOR1", tree, {viewport.width() - 2, node.y()});
        diary.clicks("below the nodes", tree, {node.x(), viewport.height() - 2});
        diary.clicks("FLOOR2", tree, diary.spotOnNode("Plant.FLOOR2"), Qt::LeftButton,
                     Qt::ControlModifier);
        diary.clicks("config");
        diary.presses("Left");
        diary.does("double-clicks the first device",
                   [&] { Diary::doubleClick(diary.rows(), diary.spotOnRow(0)); });
        diary.clicks("Plant.FLOOR1.Text3");
        diary.desktop.willAnswer({Answer::no, Answer::yes, Answer::yes});
        for (const char* key : {"Del", "Del", "Ctrl+S"})
            diary.presses(key);
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("names"));
        approve("nodes-are-chosen", diary.text());
    }

    static void rowsAreChosenByHand() {
        Diary diary(twoFloors());
        diary.chooses("mnuIcon");  // waits for the first node click
        diary.clicks("Plant.FLOOR1");
        diary.clicks(0);
        diary.clicks(2, Qt::LeftButton, Qt::ControlModifier);
        for (const char* mode : {"icon", "smallicon", "list"})
            diary.does(mode, [&] { diary.button(mode).click(); });
        diary.clicks(1, Qt::RightButton);
        diary.chooses("mnuReport");
        diary.presses("Down");
        diary.presses("Menu");
        diary.presses("Ctrl+C");
        diary.presses("Return");
        diary.desktop.willAnswer({Answer::no});
        diary.presses("Del");

        const auto clicksTitle = [&](int column) {
            QHeaderView* header = diary.report()->header();
            const QPoint spot(header->sectionViewportPosition(column) + 20, header->height() / 2);
            diary.clicks(QString("title %1").arg(column), *header, spot);
        };
        clicksTitle(2);
        clicksTitle(2);
        // Whatever is clicked afterwards is sorted by that column, also where it has none.
        diary.clicks("config");
        diary.chooses("mnuSmallIcon");
        diary.clicks("Plant.FLOOR2");
        clicksTitle(0);
        diary.clicks("Plant.FLOOR1");
        diary.desktop.willAnswer({Answer::no});
        diary.chooses("mnuNewCfg");
        diary.clicks("config");
        diary.chooses("mnuCloseCfg");
        approve("rows-are-chosen", diary.text());
    }

    static void longTextsAreCutInCellsAndWholeInTooltips() {
        Diary diary(twoFloors());
        const std::string comment = std::string(2'000, 'c') + "<b>";
        diary.document.items().at("Plant.FLOOR2.Light1")->sComment = comment;
        diary.clickNode("Plant.FLOOR2");
        const QModelIndex cell = diary.rows().model()->index(0, 1);
        QCOMPARE(cell.data().toString().size(), 1'001);
        diary.hovers(diary.rows(), cell.siblingAtColumn(0));
        diary.hovers(diary.rows(), cell);
        diary.hovers(diary.tree, diary.tree.currentIndex());
        diary.tree.setGeometry(0, 40, 90, 400);
        diary.hovers(diary.tree, diary.tree.currentIndex());
        approve("tooltips", diary.text().mid(diary.text().indexOf("> hovers")));
    }

    /// To any size and back; a font follows the direction in which the window grew least.
    static void partsFollowTheWindow() {
        Diary world(twoFloors());
        world.clickNode("Plant.FLOOR1");
        const auto& toolbar = *world.window.findChild<QToolBar*>("Toolbar1");
        const auto shape = [&] {
            QString text;
            for (const QWidget* part :
                 std::initializer_list<const QWidget*>{&toolbar, &world.tree, &world.list}) {
                QDebug(&text) << part->geometry() << part->font().pointSizeF();
                if (part->font().pointSizeF() < 7) QTest::qFail("too small", __FILE__, __LINE__);
            }
            for (int column = 0; column < 6; ++column)
                QDebug(&text) << world.report()->columnWidth(column);
            return text + QString::number(toolbar.iconSize().height());
        };
        const QSize reference = world.window.size();
        const QString before = shape();
        const double font = world.tree.font().pointSizeF();
        for (const QSizeF factor : {QSizeF(0.5, 0.5), {1.3, 1.3}, {2, 2}, {2, 1}, {1, 1}}) {
            world.window.resize(static_cast<int>(reference.width() * factor.width()),
                                static_cast<int>(reference.height() * factor.height()));
            QCoreApplication::processEvents();
            QCOMPARE(shape() == before, factor == QSizeF(1, 1));
            QCOMPARE(world.tree.font().pointSizeF() > font, factor.height() > 1);
            QVERIFY(world.window.centralWidget()->height() - world.tree.geometry().bottom() <= 3);
            QCOMPARE(world.tree.geometry().bottom(), world.list.geometry().bottom());
            for (const QToolButton* button : toolbar.findChildren<QToolButton*>())
                QVERIFY(!button->isVisible() || toolbar.rect().contains(button->geometry()));
        }
    }

    static void closingAsksAndStaysWhenTheSavingFails() {
        WindowWorld world;
        const QSignalSpy ends(&world.window, &MainWindow::applicationEnded);
        world.disk.writeFault = ErrorNumber::diskFull;
        world.entry("mnuNewCfg").trigger();
        world.desktop.willAnswer({Answer::yes, Answer::no});
        QVERIFY(!world.window.close() && world.window.isVisible() && world.tree.isVisible());
        QVERIFY(world.window.close() && !world.window.isVisible());
        QCOMPARE(ends.count(), 1);
        QCOMPARE(ends.front().front().toInt(), 0);
    }
};

std::unique_ptr<QObject> mainWindowTest() { return std::make_unique<MainWindowTest>(); }

#include "MainWindowTest.moc"
