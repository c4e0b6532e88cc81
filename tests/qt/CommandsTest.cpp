// What every window tells its user, and the pictures.
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>
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
    bool shown = false;
    QTimer::singleShot(0, qApp, [&] {
        const QPointer<QWidget> dialog = QApplication::activeModalWidget();
        QVERIFY2(dialog != nullptr && QTest::qWaitForWindowActive(dialog), name);
        shown = true;
        act(*dialog);
        approve(name, *dialog);
        if (dialog) QTest::keyClick(dialog, Qt::Key_Escape);
        // A question that has no Cancel.
        if (auto* box = qobject_cast<QMessageBox*>(dialog); box != nullptr && box->isVisible())
            box->button(QMessageBox::No)->click();
        while (QWidget* left = QApplication::activeModalWidget())
            left->close();
    });
    open();
    QVERIFY2(shown, name);
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
        const auto now = [&](const char* name) {
            world.tree.setFocus();
            approve(name, world.window);
        };
        world.clickNode("config");
        now("window-root");
        world.clickRow(0);
        now("window-device-row");
        world.clickNode("Plant");  // in it an item, but a branch before it
        now("window-container");
        world.clickNode("Plant.FLOOR1");
        now("window-items-listed");
        world.clickRow(0);
        now("window-item-row");
        world.clickNode("Plant.FLOOR1.Text1");
        now("window-item");
        world.clickNode("Plant.FLOOR1");
        world.entry("mnuIcon").trigger();
        now("window-icons");
    }

    static void dialogsAsTheyAreTold() {
        QtForms forms;
        WindowWorld world(nullptr, &forms);
        world.openText(configuration(plc("Plant", branch("FLOOR1", tag("Text1") + tag("Text2")))));
        const auto entry = [&](const char* name) {
            return [=, &world] { world.entry(name).trigger(); };
        };
        const auto node = [&](const char* key) {
            return [=, &world] { doubleClick(world.tree, world.spotOnNode(key)); };
        };
        approveDialog("settings", entry("mnuSetts"));
        approveDialog("device-add", entry("mnuAddPlc"));
        approveDialog("device-change", node("Plant"));
        approveDialog("branch-add", entry("mnuAddBranch"));
        approveDialog("branch-change", node("Plant.FLOOR1"));
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
        approveDialog("names", entry("mnuPasteName"));
        world.entry("mnuFind").trigger();
        const auto windows = QApplication::topLevelWidgets();
        QWidget* find = *std::ranges::find(windows, "frmFind", &QObject::objectName);
        QVERIFY(QTest::qWaitForWindowActive(find));
        approve("find", *find);
    }

    static void boxesAsTheyAreTold() {
        QtDesktop desktop;
        approveDialog("message",
                      [&] { desktop.showMessage("<b>K\xC3\xBChlung</b> & more saved"); });
        approveDialog("question", [&] { QVERIFY(!desktop.askYesNo("Delete?")); });
        approveDialog("question-cancel",
                      [&] { QVERIFY(desktop.askYesNoCancel("Save?") == Answer::cancel); });
    }

    static void choosersAsTheyAreTold() {
        QtDesktop desktop;
        const FileFilter filter{"configuration files ", "*.xml"};
        const auto cancelled = [](const auto& choose) {
            return [&] { QVERIFY_EXCEPTION_THROWN(choose(), RunTimeError); };
        };
        const auto open = [&] { desktop.chooseFileToOpen("Open", filter); };
        const auto save = [&] { desktop.chooseFileToSave("Save as", filter, "/none/plant.xml"); };
        approveDialog("chooser-open", cancelled(open));
        approveDialog("chooser-save", cancelled(save));
    }

    static void everyPictureIsDrawnAtEverySize() {
        const auto check = [&](const QString& folder, const auto& pictureOf, const QString& keys) {
            for (const QString& key : keys.split(' ')) {
                const QString file = ":/icons/" + folder + "/" + key + ".svg";
                QVERIFY2(QFile::exists(file), qPrintable(file));
                for (const int side : {16, 24, 32})
                    for (const double ratio : {1.0, 1.5, 2.0}) {
                        const QPixmap drawn =
                            pictureOf(fromQt(key)).pixmap(QSize(side, side), ratio);
                        // For the screen's own pixels, not stretched to them.
                        QCOMPARE(drawn.width(), qRound(side * ratio));
                        QImage shape = drawn.toImage().convertToFormat(QImage::Format_Alpha8);
                        const QImage picture = shape;
                        shape.fill(0);
                        QVERIFY2(picture != shape, qPrintable(file));
                    }
            }
        };
        check("tree", icons::tree, "plc serial branch config item main");
        check("list", icons::list,
              "plc item NOEIS EIS1 EIS2_C EIS2_P EIS2_V_D EIS2_V_P EIS3 EIS4_C EIS4_F EIS5 EIS6_D "
              "EIS6_P EIS7_M EIS7_S EIS8_C EIS8_P EIS9 EIS10_S EIS10_U EIS11_S EIS11_U EIS12 EIS13 "
              "EIS14_S EIS14_U EIS15");
        check("toolbar", icons::toolbar,
              "new open save close setts plc branch item copy cut paste delete icon smallicon list "
              "report find pastename pastecomment exit group");
    }
};

std::unique_ptr<QObject> commandsTest() { return std::make_unique<CommandsTest>(); }

#include "CommandsTest.moc"
