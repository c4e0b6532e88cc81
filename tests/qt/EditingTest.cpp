// Dragging, the focus that commands go by, pasted names and finding, in the window.
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include "qt/Approved.h"
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

    /// Presses the right button on a node, moves to another, and then does as told.
    void drag(const char* from, const char* to, Qt::KeyboardModifiers keys,
              const std::function<void(QPoint)>& end) {
        const QPoint start = spotOnNode(from);
        const QPoint target = spotOnNode(to);
        QTest::mousePress(window.windowHandle(), Qt::RightButton, keys, inWindow(start));
        QTimer::singleShot(30, &window, [&] {
            moveTo(target - QPoint(0, 2));
            moveTo(target);
            end(target);
        });
        // The drag begins here and ends in the timer's turn.
        moveTo(start + QPoint(0, 2 * QApplication::startDragDistance()));
        QCoreApplication::processEvents();
    }

    void release(QPoint place) const {
        QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, inWindow(place));
    }

 private:
    void moveTo(QPoint place) const { QTest::mouseMove(window.windowHandle(), inWindow(place)); }

    QPoint inWindow(QPoint place) const { return tree.viewport()->mapTo(&window, place); }
};

}  // namespace

class EditingTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void rightButtonDragsNodes() {
        QString texts;
        for (const QString what : {"moves", "copies", "gives up"}) {
            Building world;
            world.tree.collapse(world.tree.model()->index(1, 0, world.tree.model()->index(0, 0)));
            const Qt::KeyboardModifiers keys =
                what == "copies" ? Qt::ControlModifier : Qt::NoModifier;
            const auto end = [&](QPoint place) {
                // Where the pointer rests, a closed node opens, and looks like no other.
                QVERIFY(!world.tree.isExpanded(world.tree.indexAt(place)));
                QTRY_VERIFY(world.tree.isExpanded(world.tree.indexAt(place)));
                QCOMPARE(world.form.treeDrag().dropHighlight(),
                         world.document.tree().FindNode("Annex"));
                if (what == "gives up")
                    QTest::keyClick(world.window.windowHandle(), Qt::Key_Escape);
                world.release(place);
            };
            world.does(what, [&] { world.drag("Plant.HALL", "Annex", keys, end); });
            QVERIFY(world.form.treeDrag().dropHighlight() == nullptr);
            QCOMPARE(world.desktop.pointer, Pointer::normal);
            texts += world.text().mid(world.text().lastIndexOf("\n> ") + 1);
        }
        approve("drags", texts);
    }

    static void menuTakesTheVeryNodeToDropIt() {
        Building world;
        const auto choose = [&](const char* key, const QString& entry) {
            QTest::mouseClick(world.tree.viewport(), Qt::RightButton, {}, world.spotOnNode(key));
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            const auto actions = menu->actions();
            QAction* action = *std::ranges::find(actions, entry, &QAction::text);
            const bool enabled = action->isEnabled();
            action->trigger();
            menu->close();
            return enabled;
        };
        const QString drop = "&Drop here what was taken";
        QVERIFY(choose("Plant.HALL", "Take to &copy"));
        world.forms.whenShown<frmBranch>([](frmBranch& form) {
            form.txtBranchName.text = "ROOM";
            form.cmdOk_Click();
        });
        QTest::keyClick(&world.tree, Qt::Key_F2);
        QVERIFY(choose("Annex.SHED.BOX", drop) && !choose("Annex", drop));
        QCOMPARE(outline(world.document),
                 std::string("Plant[ROOM[Door Lamp]] Annex[SHED[BOX[Key ROOM[Door Lamp]]]]"));
        QVERIFY(choose("Plant.ROOM", "Take to &move"));
        world.document.tree().remove(world.document.tree().nodeAt("Plant.ROOM"));
        QVERIFY(!choose("Annex.SHED", drop));
    }

    static void findSelectsAndOpensWhatItFinds() {
        QtForms forms;
        WindowWorld world(nullptr, &forms);
        world.openText(configuration(plc("Plant", branch("HALL", tag("Lamp")))));
        world.tree.collapseAll();
        world.list.setFocus();
        world.entry("mnuFind").trigger();
        const auto dialogs = QApplication::topLevelWidgets();
        const QPointer<QWidget> dialog =
            *std::ranges::find(dialogs, "frmFind", &QObject::objectName);
        dialog->findChild<QLineEdit*>("txtFind")->setText("lam");
        dialog->findChild<QPushButton*>("cmdFind")->click();
        const QRect place = world.tree.visualRect(world.tree.currentIndex());
        QCOMPARE(world.tree.currentIndex().data(), QVariant("Lamp"));
        QVERIFY(world.tree.viewport()->rect().contains(place.center()));
        QVERIFY(world.window.focusWidget() == &world.tree);
        world.entry("mnuFind").trigger();  // the same one
        QVERIFY(dialog != nullptr && dialog->isVisible() && world.window.close());
        QVERIFY(dialog == nullptr);
    }

    static void whateverTheUserDoes() { playMonkey(2000); }
};

std::unique_ptr<QObject> editingTest() { return std::make_unique<EditingTest>(); }

#include "EditingTest.moc"
