// What every window shows, and the icons.
#include <algorithm>

#include "model/DataTypes.h"
#include "model/Product.h"
#include "qt/Icons.h"
#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
#include "qt/Reading.h"
#include "qt/WindowWorld.h"

namespace {

QStringList namesSeen;  ///< of the fields and buttons of all dialogs

/// Reads the dialog that `open` opens, then closes it.
QString readingOf(
    const std::function<void()>& open, const std::function<void(QWidget&)>& act = [](QWidget&) {}) {
    QString text;
    inDialog(open, [&](QWidget& shown) {
        const QPointer<QWidget> dialog = &shown;
        expectValidLayout(shown);
        if (shown.inherits("FormDialog") || shown.inherits("AboutBox")) expectMnemonics(shown);
        for (const auto* edit : shown.findChildren<QLineEdit*>())
            QVERIFY(edit->hasFocus() || !edit->hasSelectedText());
        act(shown);
        text = reading(shown);
        for (const QWidget* part : tabOrder(shown))
            if (shown.inherits("FormDialog") && !namesSeen.contains(part->objectName()))
                namesSeen.append(part->objectName());
        // A question without Cancel can only be answered.
        if (dialog && dialog->isVisible()) QTest::keyClick(dialog, Qt::Key_Escape);
        if (dialog && dialog->isVisible()) dialog->close();
        if (dialog && dialog->isVisible()) QTest::keyClick(dialog, Qt::Key_Return);
    });
    return text;
}

}  // namespace

class CommandsTest : public QObject {
    Q_OBJECT

    /// Menus and toolbar must follow the table and its order, and be enabled as the editor says.
    static void expectCommandsAsInTheTable(const WindowWorld& world) {
        QList<QAction*> menus = world.window.menuBar()->actions(), entries;
        QList<QAction*> buttons = world.window.findChild<QToolBar*>("Toolbar1")->actions();
        for (const Command& command : commandTable()) {
            if (command.kind == Command::Kind::inContextMenus) continue;
            const bool isMenu = command.kind == Command::Kind::menu;
            const QAction* action = (isMenu ? menus : entries).takeFirst();
            if (isMenu && action->menu() != nullptr) entries = action->menu()->actions();
            QCOMPARE(action->isSeparator(), command.kind == Command::Kind::separator);
            if (action->isSeparator()) continue;
            QCOMPARE(action->text(), toQt(command.caption));
            QCOMPARE(action->shortcut().toString(), toQt(command.shortcut));
            QVERIFY2(action->isEnabled() == world.form.isEnabled(command), command.name.data());
            QCOMPARE(action->isChecked(),
                     command.view && *command.view == world.form.ListView1.view());
        }
        auto group = toolbarCommands().front()->button.group;
        int right = -1;  // of the button before
        for (const Command* command : toolbarCommands()) {
            const bool isNext = command->button.group == group;
            group = command->button.group;
            QVERIFY(isNext || buttons.takeFirst()->isSeparator());
            const QAction* action = buttons.takeFirst();
            auto& button = world.button(command->button.key.data());
            QVERIFY(isNext ? button.x() == right + 1 : button.x() > right + 1);
            right = button.geometry().right();
            QVERIFY(button.parentWidget()->rect().contains(button.geometry()) &&
                    button.iconSize().height() <= button.height());
            QCOMPARE(tooltipAt(button, {1, 1}), toQt(command->button.tooltip));
            QCOMPARE(accessible(button, QAccessible::Name), toQt(command->caption).remove('&'));
            QVERIFY2(action->isEnabled() == world.form.isEnabled(*command), command->name.data());
            QCOMPARE(button.isChecked(),
                     command->view && *command->view == world.form.ListView1.view());
        }
        QVERIFY(menus.isEmpty() && entries.isEmpty() && buttons.isEmpty());
    }

 private Q_SLOTS:
    static void commandsFollowTheTableInEveryState() {
        WindowWorld world;
        QVERIFY(QTest::qWaitForWindowActive(&world.window));
        QCOMPARE(world.window.windowTitle(), "QUONAutomation - OPCOlvan");
        const QLabel& hint = *world.window.findChild<QLabel*>("hint");
        QVERIFY(hint.text().startsWith("Begin with <b>New Configuration</b>, <b>Open Config"));
        QVERIFY(hint.isVisible() && hint.rect() == world.window.centralWidget()->rect());
        expectCommandsAsInTheTable(world);
        world.window.resize(1, 1);
        bool loading = false;
        world.desktop.onPendingEvents = [&] {
            if (std::exchange(loading, true)) return;
            expectCommandsAsInTheTable(world);
            QCOMPARE(world.window.findChild<QLabel*>("lblLabel")->text(), "Loading File ....");
            const auto& panel = *world.window.findChild<QLabel*>("lblLabel")->parentWidget();
            const QPoint middle = world.window.centralWidget()->rect().center();
            QVERIFY((panel.geometry().center() - middle).manhattanLength() < 3);
            QVERIFY(!panel.visibleRegion().isEmpty());
        };
        world.openText(configuration(
            plc("Plant", branch("FLOOR1", tag("Text1") + tag("Text2")) + tag("Light1"))));
        QVERIFY(loading && !world.window.findChild<QLabel*>("lblLabel")->isVisible());
        QVERIFY(!hint.isVisible());
        world.clickNode("Plant.FLOOR1");
        expectCommandsAsInTheTable(world);
        world.clickRow(0);
        world.button("list").click();
        expectCommandsAsInTheTable(world);
        QCOMPARE(reading(world.window), "QUONAutomation - OPCOlvan: Contents, Configuration tree");
        // At the opening size the parts have fixed fractions of the inner area.
        world.window.resize(world.form.referenceSize.width, world.form.referenceSize.height);
        const QSize inner = world.window.centralWidget()->size();
        const auto layout = frmEditing::layoutFor({inner.width(), inner.height()});
        for (const auto& [part, place] :
             {std::pair<QWidget&, Rectangle>(world.tree, layout.tree), {world.list, layout.list}})
            QCOMPARE(part.geometry(), QRect(place.left, place.top, place.width, place.height));
    }

    static void dialogsNameTheirFieldsAndButtons() {
        QtForms forms;
        WindowWorld world(&forms);
        world.openText(configuration(plc("Plant", branch("FLOOR1", tag("Text1") + tag("Text2")))));
        const auto entry = [&](const char* name) {
            return [=, &world] { world.entry(name).trigger(); };
        };
        const auto node = [&](const char* key) { return [=, &world] { world.openNode(key); }; };
        QCOMPARE(
            readingOf(entry("mnuSetts")),
            "EDI Global Settings: Port Name*=COM1, EDI Type*=PEI16x9600, RX Timeout (ms)=1000, "
            "[OK], Exit");
        QCOMPARE(readingOf(entry("mnuAddPlc")),
                 "Phisical Group Properties: Object Name*=New Device 2, BCU Port*=COM1, "
                 "EDI Type*=PEI16x9600, Receive Timeout (ms)=1000, [OK], Exit");
        QCOMPARE(readingOf(node("Plant")),
                 "Phisical Group Properties: Object Name*=Plant, BCU Port*=COM2, "
                 "EDI Type*=PEI10x19200, Receive Timeout (ms)=1500, [OK], Exit");
        QCOMPARE(readingOf(entry("mnuAddBranch")),
                 "Branch: Branch name:*=NewBranch2, [OK], Cancel");
        const QString sign =
            "'1' at the start of a branch name: the OPC server cannot read a file that holds this";
        QCOMPARE(
            readingOf(node("Plant.FLOOR1"),
                      [&](QWidget& dialog) {
                          auto* name = dialog.findChild<QLineEdit*>("txtBranchName");
                          name->setText("1st");
                          QCOMPARE(accessible(*name, QAccessible::Description), sign);
                          QCOMPARE(tooltipAt(*name->findChild<QAbstractButton*>(), {1, 1}), sign);
                          name->setText("FLOOR2");
                      }),
            "Branch: Branch name:*=FLOOR2, [OK], Cancel");
        const QString address =
            "Group Address (main)*=%1, Group Address (middle)*=%2, Group Address (sub)*=%3, ";
        QCOMPARE(readingOf(entry("mnuAddItem")),
                 "Group Address Properties: Item Name*=New Item 3, Comment*=, " +
                     address.arg("", "", "") +
                     "Data Type: EIS1, Access Right: READWRITE, Read, [Add and Exit], "
                     "Add and Increment, Add Vector...., Exit");
        QCOMPARE(
            readingOf(entry("mnuAddItem"),
                      [](QWidget& dialog) {
                          dialog.findChild<QAbstractButton*>("cmdGroup")->click();
                          QVERIFY(dialog.findChild<QFrame*>("frmInserimento")->frameWidth() > 0);
                          expectValidLayout(dialog);
                      }),
            "Group Address Properties: INSERT NUMBER OF ITEMS TO ADD=1, [OK], Add and Exit, "
            "Add and Increment, Add Vector...., Exit");
        QCOMPARE(readingOf(node("Plant.FLOOR1.Text1")),
                 "Group Address Properties: Item Name*=Text1, Comment*=, " +
                     address.arg("1", "2", "3") +
                     "Data Type: EIS1, Access Right: READ, Read, [Confirm Modify], Exit, "
                     "Also used by Plant.FLOOR1.Text2");
        QCOMPARE(readingOf(entry("mnuAbout")), "About OPCOlvan: [OK], " + toQt(companyContact) +
                                                   ", OPCOlvan, Version " + toQt(productVersion) +
                                                   ", " + toQt(productDescription) + ", " +
                                                   toQt(companyContact));
        world.clickNode("Plant.FLOOR1");
        world.clickRow(0);
        world.clickRow(1, Qt::ShiftModifier);
        QCOMPARE(
            readingOf(entry("mnuItemProperties")),
            "Properties of Several Items: Data Type: EIS1, Access Right: READ, Olvan Flag: Read, "
            "[OK], Cancel, 2 items. An empty field leaves each item as it is.");
        world.desktop.clipboard = "Gate\r\nA&B\r\n";
        const auto showsNames = [](QWidget& dialog) {
            auto& view = *dialog.findChild<QTableView*>();
            auto& grid = *view.model();
            new QAbstractItemModelTester(&grid, &dialog);
            QCOMPARE(grid.headerData(2, Qt::Horizontal), "New Item name");
            QCOMPARE(grid.headerData(1, Qt::Horizontal, Qt::AccessibleTextRole), "becomes");
            const auto cell = [&](int row, int column, int role = Qt::DisplayRole) {
                return grid.index(row, column).data(role);
            };
            QCOMPARE(cell(1, 0).toString() + cell(1, 2).toString(), "Text2A&B");
            // Only the new name of the second row has a fault.
            for (int at = 0; at < 6; ++at) {
                const bool isFaulty = at == 5;
                QCOMPARE(cell(at / 3, at % 3, Qt::ForegroundRole).isValid(), isFaulty);
                QCOMPARE(cell(at / 3, at % 3, Qt::DecorationRole).isValid(), isFaulty);
                QCOMPARE(cell(at / 3, at % 3, Qt::TextAlignmentRole).isValid(), at % 3 == 1);
                const QString fault =
                    cell(at / 3, at % 3, Qt::AccessibleDescriptionRole).toString();
                const QString tip = cell(at / 3, at % 3, Qt::ToolTipRole).toString();
                QCOMPARE(tip, (isFaulty ? fault + "\n" : "") + cell(at / 3, at % 3).toString());
                QCOMPARE(fault.startsWith("'&'"), isFaulty);
            }
            QVERIFY(!view.horizontalHeader()->sectionsClickable() &&
                    view.verticalHeader()->isHidden());
            const int arrow = view.fontMetrics().horizontalAdvance("<---");
            QVERIFY(view.columnWidth(1) > arrow &&
                    view.columnWidth(1) < 2 * view.columnWidth(0) / 5);
            QVERIFY(view.columnWidth(0) - view.columnWidth(2) < 2);
            QCOMPARE(view.horizontalHeader()->length(), view.viewport()->width());
            QVERIFY(view.rowHeight(0) < 2 * view.fontMetrics().height() && !view.wordWrap());
        };
        QCOMPARE(readingOf(entry("mnuPasteName"), showsNames),
                 "Replace Text: [Replace], Cancel, Replace Text");
        QCOMPARE(
            namesSeen.join(' '),
            "cmbPort cmbEdiType txtTimeout cmdApply cmdExit txtName txtBranchName cmdOk cmdCancel "
            "txtItemName txtComment txtAddress0 txtAddress1 txtAddress2 cmbDataType cmbAccessRight "
            "optLettura0 cmdAdd cmdGroup txtNumbItems cmdOkNumber cmbFlag Command2 Command1 Grid1");
    }

    static void messageBoxesAndFileChoosersShowWhatTheyAreGiven() {
        QtDesktop desktop;
        desktop.setPointer(Pointer::busy);
        QCOMPARE(readingOf([&] { desktop.showMessage("<b>K\xC3\xBChlung</b> & more saved"); },
                           [](QWidget& box) {
                               QCOMPARE(QGuiApplication::overrideCursor()->shape(),
                                        Qt::ArrowCursor);
                               const auto& label = *box.findChild<QLabel*>("qt_msgbox_label");
                               QCOMPARE(label.textFormat(), Qt::PlainText);
                           }),
                 "OPCOlvan: [OK], <b>K\u00FChlung</b> & more saved");
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        desktop.setPointer(Pointer::normal);
        QVERIFY(QGuiApplication::overrideCursor() == nullptr);
        QCOMPARE(readingOf([&] { QVERIFY(desktop.askYesNo("Save?", Answer::yes)); }),
                 "OPCOlvan: [Yes], No, Save?");
        QCOMPARE(readingOf([&] { QVERIFY(!desktop.askYesNo("Delete?", Answer::no)); }),
                 "OPCOlvan: [No], Yes, Delete?");
        QCOMPARE(readingOf([&] { QVERIFY(desktop.askYesNoCancel("Save?") == Answer::cancel); }),
                 "OPCOlvan: [Yes], No, Cancel, Save?");
        inDialog([&] { QVERIFY(desktop.askYesNoCancel("Save?") == Answer::no); },
                 [](QWidget& box) { box.findChildren<QPushButton*>().at(1)->click(); });
        // Of a file chooser, which is from Qt or the platform, only the settings are checked.
        const FileFilter filter{"configuration files ", "*.xml"};
        const std::string path = SAMPLES_DIR "/plant.xml";
        inDialog([&] { QCOMPARE(desktop.chooseFileToSave("Save as", filter, path), path); },
                 [](QWidget& box) {
                     auto& chooser = dynamic_cast<QFileDialog&>(box);
                     QCOMPARE(chooser.windowTitle(), "Save as");
                     QCOMPARE(chooser.nameFilters(), QStringList("configuration files (*.xml)"));
                     QCOMPARE(chooser.acceptMode(), QFileDialog::AcceptSave);
                     QCOMPARE(chooser.defaultSuffix(), "xml");
                     QVERIFY(chooser.testOption(QFileDialog::DontConfirmOverwrite));
                     QTest::keyClick(chooser.windowHandle(), Qt::Key_Return);
                 });
        inDialog(
            [&] {
                QVERIFY_EXCEPTION_THROWN(desktop.chooseFileToOpen("Open", filter), RunTimeError);
            },
            [](QWidget& box) {
                auto& chooser = dynamic_cast<QFileDialog&>(box);
                QCOMPARE(chooser.acceptMode(), QFileDialog::AcceptOpen);
                QCOMPARE(chooser.fileMode(), QFileDialog::ExistingFile);
                QTest::keyClick(&chooser, Qt::Key_Escape);
            });
    }

    /// No icon is missing, and each is drawn for the pixels of the screen, not scaled.
    static void everyIconIsDrawnAtEverySize() {
        for (const QString& folder : QDir(":/icons").entryList({"tree", "list", "toolbar"})) {
            const QDir files(":/icons/" + folder);
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
        QCOMPARE(icons::besideText(QFontMetrics(QFont("", 1))), QSize(16, 16));
        for (const int side : {16, 24, 32, 48, 64, 96})
            for (const auto mode : {QIcon::Normal, QIcon::Selected}) {
                const auto drawn = [&](const QIcon& icon) {
                    return icon.pixmap(QSize(side, side), 1, mode).toImage();
                };
                const QImage plain = drawn(icons::tree("plc"));
                const QImage marked = drawn(icons::marked(icons::tree("plc")));
                const QRect upper(0, 0, side, side - side * 11 / 16);
                QVERIFY(marked != plain && marked.copy(upper) == plain.copy(upper));
                QCOMPARE(marked.pixel(side / 8, side / 2), plain.pixel(side / 8, side / 2));
            }
        QStringList needed{"tree/config", "list/plc", "toolbar/group", "list/EIS4_F"};
        for (const DataType& type : dataTypes())
            needed.append("list/" + toQt(type.name));
        for (const Command* command : toolbarCommands())
            needed.append("toolbar/" + toQt(command->button.picture));
        for (const QString& each : needed)
            QVERIFY2(QFile::exists(":/icons/" + each + ".svg"), qPrintable(each));
    }
};

std::unique_ptr<QObject> commandsTest() { return std::make_unique<CommandsTest>(); }

#include "CommandsTest.moc"
