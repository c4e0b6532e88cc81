// Dragging, the focus that commands go by, pasted names and finding, in the window.

#include "qt/Diary.h"
#include "qt/Monkey.h"
#include "qt/QtForms.h"

namespace {

class Building : public Diary {
 public:
    Building()
        : Diary(configuration(plc("Plant", branch("HALL", tag("Lamp") + tag("Door"))) +
                              plc("Annex", branch("SHED", branch("BOX", tag("Key")))))) {
        window.resize(900, 700);  // wherever the platform's screen ends
        tree.setGeometry(0, 40, 400, 600);
    }

    /// Presses the right button on a node, moves to another, goes on from there and lets go.
    void rightDrags(const char* from, const char* to, const std::function<void()>& goOn,
                    Qt::KeyboardModifiers held = {}) {
        const QPoint start = spotOnNode(from);
        const QPoint target = spotOnNode(to);
        does(QString("drags %1 to %2").arg(from, to), [&] {
            moveTo(start);
            QTest::mousePress(window.windowHandle(), Qt::RightButton, held, at_);
            QTimer::singleShot(30, &window, [&] {
                does("comes there", [&] {
                    moveTo(target - QPoint(0, 2));
                    moveTo(target);
                });
                goOn();
                QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, at_);
            });
            // The drag begins here and ends in the timer's turn.
            moveTo(start + QPoint(0, 2 * QApplication::startDragDistance()));
            QCoreApplication::processEvents();
        });
        tell(QString("pointer: %1").arg(static_cast<int>(desktop.pointer)));
    }
    void moveTo(QPoint place) {
        at_ = tree.viewport()->mapTo(&window, place);
        QTest::mouseMove(window.windowHandle(), at_);
    }

 private:
    QPoint at_;
};

}  // namespace

class EditingTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void rightButtonDragsNodes() {
        Building world;
        world.tree.collapse(world.indexOf("Annex"));
        world.rightDrags("Plant.HALL", "Annex", [&] {
            const auto& drag = *world.tree.findChild<QDrag*>();
            const QRect row = world.tree.visualRect(world.indexOf("Plant.HALL"));
            QCOMPARE(drag.pixmap().height(), row.height());
            QVERIFY(drag.pixmap().width() > row.height() && drag.hotSpot().x() < 0);
            world.does("rests there",
                       [&] { QTRY_VERIFY(world.tree.isExpanded(world.indexOf("Annex"))); });
        });
        world.rightDrags(
            "Annex.HALL", "Plant", [] {}, Qt::ControlModifier);
        world.rightDrags("Annex.HALL", "Annex.SHED", [&] {
            world.does("gives up",
                       [&] { QTest::keyClick(world.window.windowHandle(), Qt::Key_Escape); });
        });
        world.rightDrags("Annex.HALL", "Annex.SHED", [&] {
            world.does("leaves the tree", [&] { world.moveTo({world.tree.width() + 50, 9}); });
        });
        world.tree.resize(world.tree.width(), 5 * world.tree.sizeHintForRow(0));
        world.tree.collapse(world.indexOf("Annex.HALL"));
        QScrollBar& bar = *world.tree.verticalScrollBar();
        world.rightDrags("Plant.HALL", "Plant", [&] {
            world.does("goes to the edge below", [&] {
                world.moveTo({60, world.tree.viewport()->height() - 2});
                QTRY_COMPARE(bar.value(), bar.maximum());
            });
            world.does("goes to the edge above", [&] {
                world.moveTo({60, 2});
                QTRY_COMPARE(bar.value(), 0);
            });
            world.moveTo({60, world.tree.viewport()->height() - 2});
            QTRY_COMPARE(bar.value(), bar.maximum());
            world.moveTo(world.tree.visualRect(world.indexOf("Annex.HALL")).center());
        });
        world.does("looks at the top", [&] {
            bar.setValue(0);
            QTest::qWait(150);
        });
        world.does("another editor's node comes", [&] {
            const QMimeData node;
            QDragEnterEvent enters({20, 2}, Qt::CopyAction, &node, Qt::RightButton, {});
            QCoreApplication::sendEvent(world.tree.viewport(), &enters);
            QVERIFY(!enters.isAccepted());
        });
        approve("drags", world.text());
    }

    static void menuTakesTheVeryNodeToDropIt() {
        Building world;
        const QString drop = "Drop here what was taken";
        world.choosesAt("Plant.HALL", "Take to copy");
        world.presses("Esc");
        world.clicks("Plant.HALL", Qt::RightButton);
        world.choosesAt("Plant.HALL", "Take to copy");
        world.forms.whenShown<frmBranch>([](frmBranch& form) {
            form.txtBranchName.text = "ROOM";
            form.cmdOk_Click();
        });
        world.presses("F2");
        world.choosesAt("Annex.SHED.BOX", drop);
        world.clicks("Annex", Qt::RightButton);
        world.choosesAt("Plant.ROOM", "Take to move");
        world.choosesAt("Annex.SHED", drop);
        world.choosesAt("Annex.SHED.ROOM", "Take to move");
        Document& document = world.document;
        world.does("it is deleted",
                   [&] { document.RemoveSubtree(document.tree().nodeAt("Annex.SHED.ROOM")); });
        world.clicks("Annex.SHED", Qt::RightButton);
        approve("taken", world.text());
    }

    static void keysUndoAndRedo() {
        QtForms forms;
        WindowWorld world(&forms);
        world.openText(configuration(
            plc("P", branch("A", branch("B", tag("x")) + branch("C", tag("y"))) + tag("z"))));
        world.desktop.willAnswer({Answer::yes});
        const auto press = [&](const char* keys) {
            for (const QKeySequence& key : QKeySequence::listFromString(keys))
                QTest::keySequence(&world.window, key);
        };
        const auto shown = [&] {  // the tree as it is open, and what is selected in it
            QString texts;
            for (auto row = world.tree.model()->index(0, 0); row.isValid();
                 row = world.tree.indexBelow(row))
                texts += row.data().toString() + (row == world.tree.currentIndex() ? "* " : " ");
            return texts + world.disagreement();
        };
        world.clickNode("P.A.C");
        QTest::keyClick(&world.tree, Qt::Key_Left);  // folded
        world.clickNode("P.A");
        const QString before = "/plant.xml P A* B x C z ";
        QCOMPARE(shown(), before);
        press("Del");
        QCOMPARE(shown(), "/plant.xml P z* ");
        press("Ctrl+Z");
        QCOMPARE(shown(), before);
        for (const char* redo : {"Ctrl+Y", "Ctrl+Shift+Z"}) {
            press(redo);
            QCOMPARE(shown(), "/plant.xml P* z ");
            press("Ctrl+Z");
            QCOMPARE(shown(), before);
        }
    }

    static void findSelectsAndOpensWhatItFinds() {
        QtForms forms;
        Diary world(configuration(plc("Plant", branch("HALL", tag("Lamp") + tag("Lamp2")))),
                    &forms);
        world.tree.collapseAll();
        world.list.setFocus();
        world.chooses("mnuFind");
        const auto dialogs = QApplication::topLevelWidgets();
        const QPointer<QWidget> dialog =
            *std::ranges::find(dialogs, "frmFind", &QObject::objectName);
        dialog->findChild<QLineEdit*>("txtFind")->setText("lam");
        world.does("finds it", [&] { dialog->findChild<QPushButton*>("cmdFind")->click(); });
        world.presses("F3");
        approve("found", world.text());
        world.entry("mnuFind").trigger();  // the same one
        QVERIFY(dialog != nullptr && dialog->isVisible() && world.window.close());
        QVERIFY(dialog == nullptr);
    }

    static void whateverTheUserDoes() { playMonkey(2000); }
};

std::unique_ptr<QObject> editingTest() { return std::make_unique<EditingTest>(); }

#include "EditingTest.moc"
