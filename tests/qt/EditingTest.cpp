// Dragging, the focus that commands go by, pasted names and finding, in the window.
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

#include "qt/Monkey.h"
#include "qt/QtForms.h"
#include "qt/WindowWorld.h"

namespace {

class Building : public WindowWorld {
 public:
    explicit Building(Forms* ownForms = nullptr) : WindowWorld(nullptr, ownForms) {
        window.resize(900, 700);  // wherever the platform's screen ends
        tree.setGeometry(0, 40, 400, 600);
        openText(configuration(plc("Plant", branch("HALL", tag("Lamp") + tag("Door"))) +
                               plc("Annex", branch("SHED", ""))));
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
        const char* const before = "Plant[HALL[Lamp Door]] Annex[SHED[]]";
        const struct {
            Qt::KeyboardModifiers keys;
            bool escape;
            const char* after;
        } cases[] = {
            {{}, false, "Plant[] Annex[SHED[HALL[Lamp Door]]]"},
            {Qt::ControlModifier, false, "Plant[HALL[Lamp Door]] Annex[SHED[HALL[Lamp Door]]]"},
            {{}, true, before},
        };
        for (const auto& [keys, escape, after] : cases) {
            Building world;
            const TreeDrag& drag = world.form.treeDrag();
            const Node* marked = nullptr;
            world.drag("Plant.HALL", "Annex.SHED", keys, [&](QPoint place) {
                marked = drag.dropHighlight();
                if (escape) QTest::keyClick(world.window.windowHandle(), Qt::Key_Escape);
                world.release(place);
            });
            QVERIFY(marked == world.document.tree().FindNode("Annex.SHED"));
            QCOMPARE(outline(world.document), std::string(after));
            QVERIFY(drag.dropHighlight() == nullptr);
            QCOMPARE(world.desktop.pointer, Pointer::normal);
        }

        // A right click without a movement is a click.
        Building world;
        QTest::mouseClick(world.tree.viewport(), Qt::RightButton, {},
                          world.spotOnNode("Plant.HALL"));
        QCOMPARE(world.names(), QString("Door Lamp"));
        QCOMPARE(outline(world.document), std::string("Plant[HALL[Door Lamp]] Annex[SHED[]]"));
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
        QVERIFY(choose("Annex.SHED", drop));
        const std::string copied = "Plant[ROOM[Door Lamp]] Annex[SHED[ROOM[Door Lamp]]]";
        QCOMPARE(outline(world.document), copied);

        QVERIFY(choose("Plant.ROOM", "Take to &move"));
        world.document.tree().remove(world.document.tree().nodeAt("Plant.ROOM"));
        QVERIFY(!choose("Annex.SHED", drop));
    }

    static void commandsGoByTheViewThatHasTheFocus() {
        Building world;
        world.clickNode("Plant.HALL");
        world.clickRow(0);
        world.desktop.willAnswer({Answer::no, Answer::no});
        QTest::mouseClick(&world.button("delete"), Qt::LeftButton);
        world.clickNode("Plant.HALL");
        world.entry("mnuDelete").trigger();
        QCOMPARE(toQt(world.desktop.messages().at(0)),
                 QString("Are you sure you want to delete the selected items ?"));
        QCOMPARE(toQt(world.desktop.messages().at(1)),
                 QString("Are you sure you want to delete HALL and all its items?"));
    }

    static void namesArePastedThroughThePreview() {
        QtForms forms;
        Building world(&forms);
        world.clickNode("Plant.HALL");
        world.clickRow(0);
        world.clickRow(1, Qt::ShiftModifier);
        world.desktop.clipboard = "Gate\r\nSpot\r\n";
        QString shown;
        QTimer::singleShot(0, &world.window, [&] {
            auto* dialog = QApplication::activeModalWidget();
            const auto* grid = dialog->findChild<QTableView*>("Grid1")->model();
            for (int row = 0; row < grid->rowCount(); ++row)
                for (int column = 0; column < grid->columnCount(); ++column)
                    shown += grid->index(row, column).data().toString() + " ";
            dialog->findChild<QPushButton*>("Command2")->click();
        });
        world.entry("mnuPasteName").trigger();
        QCOMPARE(shown, QString("Door <--- Gate Lamp <--- Spot "));
        QCOMPARE(world.names(), QString("Gate Spot"));
        QCOMPARE(world.selectedNames(), QString("Gate Spot"));
        QCOMPARE(toQt(outline(world.document)), QString("Plant[HALL[Gate Spot]] Annex[SHED[]]"));
    }

    static void findSelectsAndOpensWhatItFinds() {
        QtForms forms;
        Building world(&forms);
        world.tree.collapseAll();
        world.list.setFocus();
        world.entry("mnuFind").trigger();
        const auto dialogs = QApplication::topLevelWidgets();
        const auto found = std::ranges::find(dialogs, "frmFind", &QObject::objectName);
        QVERIFY(found != dialogs.end() && (*found)->isVisible());
        const QPointer<QWidget> dialog = *found;
        dialog->findChild<QLineEdit*>("txtFind")->setText("lam");
        dialog->findChild<QPushButton*>("cmdFind")->click();
        QCOMPARE(world.selectedNode(), QString("Lamp"));
        QVERIFY(world.tree.viewport()->rect().contains(
            world.tree.visualRect(world.tree.currentIndex()).center()));
        QVERIFY(world.window.focusWidget() == &world.tree);

        world.entry("mnuFind").trigger();  // the same one
        QVERIFY(dialog != nullptr && dialog->isVisible());
        QVERIFY(world.window.close());
        QVERIFY(dialog == nullptr);
    }

    static void whateverTheUserDoes() { playMonkey(2000); }
};

std::unique_ptr<QObject> editingTest() { return std::make_unique<EditingTest>(); }

#include "EditingTest.moc"
