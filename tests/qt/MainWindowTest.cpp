// What the user does with the main window, by mouse and keyboard.
#include <regex>

#include "qt/Diary.h"

namespace {

std::string typed(const std::string& name, const std::string& type) {
    return std::regex_replace(tag(name), std::regex("EIS1"), type);
}

std::string twoFloors() {
    const std::string texts = typed("Text1", "EIS5") + typed("Text2_of_a_long_name", "EIS10_S") +
                              typed("Text3", "EIS11_S");
    return configuration(plc("Plant", branch("FLOOR1", texts) + branch("FLOOR2", tag("Light1"))) +
                         plc("Annex", tag("Door&#9786;")));
}

}  // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void nodesAreChosenByHand() {
        Diary diary(twoFloors());
        const QTreeView& tree = diary.tree;
        const QWidget& viewport = *tree.viewport();
        diary.clicks("Plant.FLOOR1");
        diary.presses("Home Down Down Down");
        const auto drags = [&](const char* from, const char* to) {
            diary.drags(QString(from) + " to " + to, tree, diary.spotOnNode(from),
                        diary.spotOnNode(to));
        };
        drags("Plant.FLOOR1", "Plant.FLOOR2");
        diary.chooses("mnuIcon");
        drags("Plant.FLOOR1", "Plant.FLOOR2");  // back to the one that was selected before
        diary.clicks("Plant.FLOOR1", Qt::RightButton);
        QGuiApplication::clipboard()->setText("names");
        diary.presses("F2 Return Menu Ctrl+C");
        diary.does("double-clicks FLOOR2", [&] { diary.openNode("Plant.FLOOR2"); });
        const QPoint item = diary.spotOnNode("Plant.FLOOR1.Text1");
        diary.clicks("before Text1", tree, item - QPoint(tree.indentation(), 0));

        // What chooses no node: boxes, and what is beside and below the nodes.
        const QPoint node = diary.spotOnNode("Plant.FLOOR1");
        diary.clicks("the box of FLOOR1", tree, node - QPoint(tree.indentation(), 0));
        diary.clicks("beside FLOOR1", tree, {viewport.width() - 2, node.y()});
        diary.clicks("below the nodes", tree, {node.x(), viewport.height() - 2});
        diary.clicks("FLOOR2 with Ctrl", tree, diary.spotOnNode("Plant.FLOOR2"), Qt::LeftButton,
                     Qt::ControlModifier);
        diary.clicks("config", Qt::RightButton);
        diary.presses("Left");
        diary.does("double-clicks the first device",
                   [&] { Diary::doubleClick(diary.rows(), diary.spotOnRow(0)); });
        diary.clicks("Plant.FLOOR1.Text3");
        diary.desktop.willAnswer({Answer::no, Answer::yes, Answer::yes});
        diary.desktop.willChoose("/other.xml");
        diary.presses("Del Del Ctrl+S Ctrl+Shift+S");
        const QSignalSpy ends(&diary.window, &MainWindow::applicationEnded);
        diary.document.saved = false;
        diary.disk.writeFault = ErrorNumber::diskFull;
        diary.desktop.willAnswer({Answer::yes, Answer::yes, Answer::no});
        diary.does("closes the window", [&] { QVERIFY(!diary.window.close()); });
        diary.does("closes the window", [&] { QVERIFY(diary.window.close()); });
        QCOMPARE(ends, QList({QVariantList{0}}));
        QCOMPARE(QGuiApplication::clipboard()->text(), QString("names"));
        approve("nodes-are-chosen", diary.text());
    }

    static void rowsAreChosenByHand() {
        Diary diary(twoFloors());
        diary.chooses("mnuIcon");  // waits for the first node click
        diary.clicks("Plant.FLOOR1");
        diary.presses("Tab Ctrl+A");
        diary.clicks(0);
        diary.clicks("row 2 with Ctrl", diary.rows(), diary.spotOnRow(2), Qt::LeftButton,
                     Qt::ControlModifier);
        const QSize size = diary.window.size();
        for (const char* mode : {"icon", "smallicon", "list"}) {
            diary.does(mode, [&] { diary.button(mode).click(); });
            diary.does("makes the window small", [&] { diary.window.resize(1, 1); });
            diary.does("makes it as before", [&] { diary.window.resize(size); });
        }
        diary.clicks(1, Qt::RightButton);
        diary.chooses("mnuReport");
        diary.drags("row 0 to row 2 with the right button", diary.rows(), diary.spotOnRow(0),
                    diary.spotOnRow(2), Qt::RightButton);
        diary.presses("Down Menu Ctrl+C Return");
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
        QHeaderView& header = *diary.report()->header();
        const QPoint border(header.sectionViewportPosition(1), header.height() / 2);
        diary.drags("the end of title 0", header, border,
                    border + QPoint(diary.list.width() / 5, 0));
        diary.does("makes the window large", [&] { diary.window.resize(2 * size); });
        diary.does("makes it small", [&] { diary.window.resize(1, 1); });
        diary.does("makes it high", [&] { diary.window.resize(1, 2 * size.height()); });
        approve("window-narrow", diary.window);
        diary.does("makes it as before", [&] { diary.window.resize(size); });
        diary.clicks("config");
        diary.desktop.willAnswer({Answer::no});
        diary.chooses("mnuNewCfg");
        diary.clicks("config");
        diary.chooses("mnuCloseCfg");
        approve("rows-are-chosen", diary.text());
    }

    /// One configuration, to be copied from where it is, and only where it can be opened.
    static void filesAreDroppedOnTheWindow() {
        Diary diary(twoFloors());
        diary.disk.files["/other.xml"] = configuration(plc("Other"));
        const QUrl configuration = QUrl::fromLocalFile("/other.xml");
        const QUrl another = QUrl::fromLocalFile("/other.txt");
        for (const auto& [files, offered] :
             std::initializer_list<QPair<QList<QUrl>, Qt::DropActions>>{
                 {{configuration}, Qt::MoveAction},
                 {{another}, Qt::CopyAction},
                 {{configuration, configuration}, Qt::CopyAction},
                 {{configuration}, Qt::CopyAction | Qt::MoveAction}}) {
            QMimeData content;
            content.setUrls(files);
            QDragEnterEvent enters({90, 90}, offered, &content, Qt::LeftButton, Qt::ShiftModifier);
            QDropEvent drops({90, 90}, offered, &content, Qt::LeftButton, Qt::ShiftModifier);
            diary.does("drops " + content.text().simplified(), [&] {
                QCoreApplication::sendEvent(diary.window.windowHandle(), &enters);
                if (!enters.isAccepted()) return diary.tell("is refused");
                QCoreApplication::sendEvent(diary.window.windowHandle(), &drops);
                QVERIFY(enters.dropAction() == Qt::CopyAction &&
                        drops.dropAction() == Qt::CopyAction);
            });
        }
        approve("dropped", diary.text());
    }

    static void longTextsAreCutInCellsAndWholeInTooltips() {
        Diary diary(twoFloors());
        const std::string comment = std::string(2'000, 'c') + "<b>";
        diary.document.setComment(diary.document.tree().nodeAt("Plant.FLOOR2.Light1"), comment);
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
};

std::unique_ptr<QObject> mainWindowTest() { return std::make_unique<MainWindowTest>(); }

#include "MainWindowTest.moc"
