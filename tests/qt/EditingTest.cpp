// Dragging and find in the window, and the monkey test.

#include "qt/QtForms.h"
#include "qt/WindowUser.h"

void runMonkeyTest();

namespace {

class Building : public WindowUser {
 public:
    Building()
        : WindowUser(configuration(plc("Annex", branch("SHED", branch("BOX", tag("Key")))) +
                                   plc("Plant", branch("HALL", tag("Door") + tag("Lamp"))))) {
        window.resize(900, 700);  // independent of the screen's size
        tree.setGeometry(0, 40, 400, 600);
    }

    /// Drags a node to another one with the right button; calls `goOn` before it releases the
    /// button.
    void rightDrags(const char* from, const char* to, const std::function<void()>& goOn,
                    Qt::KeyboardModifiers held = {}) {
        const QPoint start = spotOnNode(from);
        const QPoint target = spotOnNode(to);
        moveTo(start);
        QTest::mousePress(window.windowHandle(), Qt::RightButton, held, at_);
        QTimer::singleShot(30, &window, [&] {
            moveTo(target - QPoint(0, 2));
            moveTo(target);
            QCoreApplication::processEvents();
            QVERIFY2(shownTree().contains("^"), "the target is not marked");
            goOn();
            QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, at_);
        });
        // The drag begins here and ends in the timer.
        moveTo(start + QPoint(0, 2 * QApplication::startDragDistance()));
        QCoreApplication::processEvents();
        QVERIFY(desktop.pointer == Pointer::normal && !shownTree().contains("^"));
    }
    void moveTo(QPoint place) {
        at_ = tree.viewport()->mapTo(&window, place);
        QTest::mouseMove(window.windowHandle(), at_);
    }
    QString devices() const { return toQt(outline(document)); }

 private:
    QPoint at_;
};

}  // namespace

class EditingTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void rightButtonDragsNodes() {
        Building user;
        user.tree.collapse(user.indexOf("Annex"));
        user.rightDrags("Plant.HALL", "Annex", [&] {
            const auto& drag = *user.tree.findChild<QDrag*>();
            const QRect row = user.tree.visualRect(user.indexOf("Plant.HALL"));
            QCOMPARE(drag.pixmap().height(), row.height());
            QVERIFY(drag.pixmap().width() > row.height() && drag.hotSpot().y() < 0);
            QCOMPARE(drag.mimeData()->formats(), QStringList("application/x-configuration-node"));
            QTRY_VERIFY(user.tree.isExpanded(user.indexOf("Annex")));  // the pointer rests there
        });
        QCOMPARE(user.devices(), "Annex[SHED[BOX[Key]] HALL[Door Lamp]] Plant[]");
        user.rightDrags(
            "Annex.HALL", "Plant", [] {}, Qt::ControlModifier);
        const QString copied = "Annex[SHED[BOX[Key]] HALL[Door Lamp]] Plant[HALL[Door Lamp]]";
        QCOMPARE(user.devices(), copied);
        user.rightDrags("Annex.HALL", "Annex.SHED",
                        [&] { QTest::keyClick(user.window.windowHandle(), Qt::Key_Escape); });
        user.rightDrags("Annex.HALL", "Annex.SHED", [&] {
            user.moveTo({user.tree.width() + 50, 9});
        });
        QCOMPARE(user.devices(), copied);
        // The tree scrolls at its edges.
        user.tree.resize(user.tree.width(), 5 * user.tree.sizeHintForRow(0));
        user.tree.collapse(user.indexOf("Annex.HALL"));
        const QScrollBar& bar = *user.tree.verticalScrollBar();
        user.rightDrags("Annex.SHED.BOX", "Annex.SHED", [&] {
            user.moveTo({60, user.tree.viewport()->height() - 2});
            QTRY_COMPARE(bar.value(), bar.maximum());
            user.moveTo({60, 2});
            QTRY_COMPARE(bar.value(), 0);
            user.moveTo({60, user.tree.viewport()->height() - 2});
            QTRY_COMPARE(bar.value(), bar.maximum());
            user.moveTo(user.tree.visualRect(user.indexOf("Plant.HALL")).center());
        });
        QCOMPARE(user.devices(), "Annex[SHED[] HALL[Door Lamp]] Plant[HALL[Door Lamp BOX[Key]]]");
        const QMimeData node;  // from another program
        QDragEnterEvent enters({20, 2}, Qt::CopyAction, &node, Qt::RightButton, {});
        QCoreApplication::sendEvent(user.tree.viewport(), &enters);
        QVERIFY(!enters.isAccepted());
    }

    static void contextMenuMovesAndCopiesNodes() {
        Building user;
        const QString drop = "Drop here what was taken";
        const auto offersDrop = [&](const char* key) {
            user.clicks(key, Qt::RightButton);
            return user.menu().contains(drop);
        };
        user.choosesAt("Plant.HALL", "Take to copy");
        QCOMPARE(user.shownTree(), "/plant.xml[Annex[SHED[BOX[Key]]] Plant[oHALL[Door Lamp]]]");
        user.presses("Esc");
        QCOMPARE(user.shownTree(), "/plant.xml[Annex[SHED[BOX[Key]]] Plant[*HALL[Door Lamp]]]");
        QVERIFY(!offersDrop("Annex"));
        user.choosesAt("Plant.HALL", "Take to copy");
        user.document.renameBranch(user.document.tree().nodeAt("Plant.HALL"), "ROOM");
        user.choosesAt("Annex.SHED.BOX", drop);
        QCOMPARE(user.devices(), "Annex[SHED[BOX[Key ROOM[Door Lamp]]]] Plant[ROOM[Door Lamp]]");
        QVERIFY(!offersDrop("Annex"));
        user.choosesAt("Plant.ROOM", "Take to move");
        user.choosesAt("Annex.SHED", drop);
        QCOMPARE(user.devices(), "Annex[SHED[BOX[Key ROOM[Door Lamp]] ROOM[Door Lamp]]] Plant[]");
    }

    static void findSelectsNodesAndExpandsTheirParents() {
        QtForms forms;
        WindowUser user(configuration(plc("Plant", branch("HALL", tag("Lamp") + tag("Lamp2")))),
                        &forms);
        user.tree.collapseAll();
        user.list.setFocus();
        user.entry("mnuFind").trigger();
        const auto dialogs = QApplication::topLevelWidgets();
        const auto found = std::ranges::find(dialogs, "frmFind", &QObject::objectName);
        QVERIFY2(found != dialogs.end(), "Find shows no dialog");
        const QPointer<QWidget> dialog = *found;
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QCOMPARE(reading(*dialog),
                 "Find Item: Type the name of the item to find*=, [Find], Find Next, Exit");
        expectMnemonics(*dialog);
        expectValidLayout(*dialog);
        dialog->findChild<QLineEdit*>("txtFind")->setText("lam");
        dialog->findChild<QPushButton*>("cmdFind")->click();
        QCOMPARE(user.shownTree(), "/plant.xml[Plant[HALL[*Lamp Lamp2]]]");
        QCOMPARE(user.keyboard(), "tree");
        user.presses("F3");
        QCOMPARE(user.shownTree(), "/plant.xml[Plant[HALL[Lamp *Lamp2]]]");
        auto& text = *dialog->findChild<QLineEdit*>("txtFind");
        auto& sign = *text.findChild<QToolButton*>();
        QVERIFY(!sign.isVisible());
        text.setText("lamps");
        user.presses("F3");
        QVERIFY(sign.isVisible());
        QCOMPARE(accessible(text, QAccessible::Description), "Nothing was found");
        text.setText("lam");
        QVERIFY(!sign.isVisible());
        user.window.activateWindow();
        user.entry("mnuFind").trigger();  // shows the same dialog
        QTRY_COMPARE(text.selectedText(), "lam");
        QVERIFY(dialog != nullptr && dialog->isVisible() && user.window.close());
        QVERIFY(dialog == nullptr);
    }

    static void addedItemsAreScrolledIntoView() {
        std::string items;
        for (int i = 100; i < 300; ++i)
            items += tag("Lamp" + std::to_string(i));
        WindowUser user(configuration(plc("Plant", branch("HALL", items))));
        // Room for the text, but not for what is on its left.
        user.tree.setGeometry(
            0, 40, user.tree.sizeHintForIndex(user.indexOf("Plant.HALL.Lamp250")).width() + 60,
            200);
        user.clicks("Plant.HALL");
        user.tree.horizontalScrollBar()->setValue(5);
        user.presses("Left");
        user.forms.whenShown<frmItems>([](frmItems& form) {
            form.txtItemName.text = "Lamp250b";
            form.txtAddress = {{{"1"}, {"1"}, {"1"}}};
            form.cmdOk_Click();
        });
        user.presses("Ctrl+I");
        const auto isSeen = [](const QAbstractItemView& view, const QModelIndex& index) {
            const QRect place(view.visualRect(index).topLeft(), view.sizeHintForIndex(index));
            return view.viewport()->rect().contains(place);
        };
        QTRY_VERIFY(isSeen(user.tree, user.indexOf("Plant.HALL.Lamp250b")));
        user.tree.horizontalScrollBar()->setValue(0);
        QTest::qWait(5);
        QCOMPARE(user.tree.horizontalScrollBar()->value(), 0);
        const auto row = user.names().split(' ').indexOf("Lamp250b");
        QVERIFY(isSeen(user.rows(), user.rows().model()->index(static_cast<int>(row), 0)));
    }

    static void monkeyTest() { runMonkeyTest(); }
};

std::unique_ptr<QObject> editingTest() { return std::make_unique<EditingTest>(); }

#include "EditingTest.moc"
