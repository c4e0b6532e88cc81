// What every window tells its user, and the pictures.
#include <algorithm>

#include "qt/Approved.h"
#include "qt/Icons.h"
#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
#include "qt/WindowWorld.h"

namespace {

/// Approves the dialog that is opened, after what its user has done in it, and leaves it.
void approveDialog(
    const char* name, const std::function<void()>& open,
    const std::function<void(QWidget&)>& act = [](QWidget&) {}) {
    inDialog(open, [&](QWidget& shown) {
        const QPointer<QWidget> dialog = &shown;
        act(shown);
        approve(name, shown);
        // A question without a Cancel stays, whatever is tried, until it is answered.
        if (dialog && dialog->isVisible()) QTest::keyClick(dialog, Qt::Key_Escape);
        if (dialog && dialog->isVisible()) dialog->close();
        if (dialog && dialog->isVisible()) QTest::keyClick(dialog, Qt::Key_Return);
    });
}

}  // namespace

class CommandsTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void mainWindowAsItIsTold() {
        WindowWorld world;
        approve("window-none", world.window);
        QVERIFY(QTest::qWaitForWindowActive(&world.window));
        bool loading = false;
        world.desktop.onPendingEvents = [&] {
            if (!std::exchange(loading, true)) approve("window-loading", world.window);
        };
        world.openText(configuration(
            plc("Plant", tag("Light1") + branch("FLOOR1", tag("Text1") + tag("Text2")))));
        approve("window-open", world.window);
        world.clickNode("Plant.FLOOR1");
        world.clickRow(0);
        approve("window-item-row", world.window);
    }

    static void dialogsAsTheyAreTold() {
        QtForms forms;
        WindowWorld world(&forms);
        world.openText(configuration(plc("Plant", branch("FLOOR1", tag("Text1") + tag("Text2")))));
        const auto entry = [&](const char* name) {
            return [=, &world] { world.entry(name).trigger(); };
        };
        const auto node = [&](const char* key) { return [=, &world] { world.openNode(key); }; };
        approveDialog("settings", entry("mnuSetts"));
        approveDialog("device-add", entry("mnuAddPlc"));
        approveDialog("device-change", node("Plant"));
        approveDialog("branch-add", entry("mnuAddBranch"));
        approveDialog("branch-change", node("Plant.FLOOR1"), [](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtBranchName")->setText("1st");
        });
        approveDialog("item-add", entry("mnuAddItem"));
        approveDialog("item-vector", entry("mnuAddItem"), [](QWidget& dialog) {
            dialog.findChild<QLineEdit*>("txtItemName")->setText("Lamp\u263a");
            dialog.findChild<QAbstractButton*>("cmdGroup")->click();
        });
        approveDialog("item-change", node("Plant.FLOOR1.Text1"));
        approveDialog("about", entry("mnuAbout"));
        world.clickNode("Plant.FLOOR1");
        world.clickRow(0);
        world.clickRow(1, Qt::ShiftModifier);
        world.desktop.clipboard = "Gate\r\nSpot\r\n";
        approveDialog("names", entry("mnuPasteName"), [](QWidget& dialog) {
            new QAbstractItemModelTester(dialog.findChild<QTableView*>()->model(), &dialog);
        });
        world.entry("mnuFind").trigger();
        const auto windows = QApplication::topLevelWidgets();
        QWidget* find = *std::ranges::find(windows, "frmFind", &QObject::objectName);
        QVERIFY(QTest::qWaitForWindowActive(find));
        approve("find", *find);
    }

    static void boxesAndChoosersAsTheyAreTold() {
        QtDesktop desktop;
        desktop.setPointer(Pointer::busy);
        approveDialog("message",
                      [&] { desktop.showMessage("<b>K\xC3\xBChlung</b> & more saved"); });
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        desktop.setPointer(Pointer::normal);
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
        approveDialog("question", [&] { QVERIFY(desktop.askYesNo("Save?", Answer::yes)); });
        approveDialog("question-no", [&] { QVERIFY(!desktop.askYesNo("Delete?", Answer::no)); });
        approveDialog("question-cancel",
                      [&] { QVERIFY(desktop.askYesNoCancel("Save?") == Answer::cancel); });
        inDialog([&] { QVERIFY(desktop.askYesNoCancel("Save?") == Answer::no); },
                 [](QWidget& box) { box.findChildren<QPushButton*>().at(1)->click(); });
        const FileFilter filter{"configuration files ", "*.xml"};
        approveDialog(
            "chooser-save",
            [&] {
                QCOMPARE(desktop.chooseFileToSave("Save as", filter, SAMPLES_DIR "/plant.xml"),
                         std::string(SAMPLES_DIR "/plant.xml"));
            },
            [](QWidget& chooser) { QTest::keyClick(chooser.windowHandle(), Qt::Key_Return); });
        approveDialog("chooser-open", [&] {
            QVERIFY_EXCEPTION_THROWN(desktop.chooseFileToOpen("Open", filter), RunTimeError);
        });
    }

    /// None is missing, and each is drawn for the screen's own pixels, not stretched to them.
    static void everyPictureIsDrawnAtEverySize() {
        QString texts;
        for (const QString& folder : QDir(":/icons").entryList({"tree", "list", "toolbar"})) {
            const QDir files(":/icons/" + folder);
            texts += folder + ": " + files.entryList().join(' ') + "\n";
            for (const QString& file : files.entryList()) {
                const std::string key = fromQt(file.chopped(4));
                const QIcon picture = folder == "tree"   ? icons::tree(key)
                                      : folder == "list" ? icons::list(key)
                                                         : icons::toolbar(key);
                const auto drawn = picture.pixmap(QSize(24, 24), 1.5).toImage();
                const QIcon own(files.filePath(file));
                QVERIFY(drawn == own.pixmap(QSize(24, 24), 1.5).toImage() && drawn.width() == 36);
            }
        }
        approve("pictures", texts);
        // A fault's sign leaves free what is above it and to its left.
        const QImage plain = icons::tree("plc").pixmap(QSize(32, 32)).toImage();
        const QImage marked = icons::marked(icons::tree("plc")).pixmap(QSize(32, 32)).toImage();
        const QRect corner(12, 12, 20, 20);
        QVERIFY(marked.copy(0, 0, 32, 9) == plain.copy(0, 0, 32, 9));
        QVERIFY(marked.copy(0, 0, 9, 32) == plain.copy(0, 0, 9, 32));
        QVERIFY(marked.copy(corner) != plain.copy(corner));
    }
};

std::unique_ptr<QObject> commandsTest() { return std::make_unique<CommandsTest>(); }

#include "CommandsTest.moc"
