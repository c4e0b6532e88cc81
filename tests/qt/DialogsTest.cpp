// What the dialogs show, and the dialogs filled in with mouse and keyboard.

#include "model/DataTypes.h"
#include "model/Product.h"
#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
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

/// Performs a step in a dialog: "types FIELD TEXT" replaces the text; "composes FIELD TEXT" enters
/// it at once, as an input method; "pastes FIELD TEXT" appends it; "chooses FIELD TEXT"; "offers
/// FIELD TEXT" expects it as the first choice; "clicks BUTTON"; "enters at BUTTON" presses Return
/// there; "finds FIELD TEXT" expects the focus and selected text; "shows LABEL TEXT" expects a
/// text; "measures" stores the height, "as high" expects it; or a key.
void act(QWidget& dialog, const QString& step) {
    const QString verb = step.section(' ', 0, step.startsWith("enters") ? 1 : 0);
    const QString name = step.mid(verb.size() + 1).section(' ', 0, 0);
    const QString text = step.mid(verb.size() + name.size() + 2);
    auto* widget = dialog.findChild<QWidget*>(name);
    auto* combo = qobject_cast<QComboBox*>(widget);
    auto* edit = combo != nullptr ? combo->lineEdit() : qobject_cast<QLineEdit*>(widget);
    if (verb == "types") {
        edit->setFocus();
        edit->selectAll();
        for (const QChar c : text)
            QTest::keyClicks(dialog.focusWidget(), c);
    } else if (verb == "pastes") {
        QGuiApplication::clipboard()->setText(text);
        edit->end(false);
        edit->paste();
    } else if (verb == "composes") {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(edit, &event);
    } else if (verb == "chooses") {
        combo->setCurrentText(text);
    } else if (verb == "offers") {
        QCOMPARE(combo->itemText(0), text);
    } else if (verb == "clicks") {
        QTest::mouseClick(widget, Qt::LeftButton);
    } else if (verb == "enters at") {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
    } else if (verb == "finds") {
        QVERIFY2(edit->hasFocus() && edit->selectedText() == text, qPrintable(step));
    } else if (verb == "shows") {
        QCOMPARE(qobject_cast<QLabel*>(widget)->text(), text);
    } else if (verb == "measures") {
        dialog.setProperty("measured", dialog.height());
    } else if (verb == "as") {
        QCOMPARE(dialog.height(), dialog.property("measured").toInt());
    } else {
        QTest::keySequence(&dialog, QKeySequence(verb));
    }
}

void performs(const std::function<void()>& open, const QString& steps) {
    inDialog(open, [&](QWidget& dialog) {
        QVERIFY(dialog.parentWidget()->inherits("MainWindow"));
        const QPointer<QWidget> alive = &dialog;
        for (const QString& step : steps.split("; "))
            if (alive) act(dialog, step);
    });
}

}  // namespace

class DialogsTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
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
        world.clicks("Plant.FLOOR1");
        world.clicks(0);
        world.clicks(1, Qt::LeftButton, Qt::ShiftModifier);
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
            QCOMPARE(grid.headerData(1, Qt::Horizontal), "");
            QCOMPARE(grid.headerData(1, Qt::Horizontal, Qt::AccessibleTextRole), "becomes");
            const auto cell = [&](int row, int column, int role = Qt::DisplayRole) {
                return grid.index(row, column).data(role);
            };
            QCOMPARE(cell(1, 0).toString() + cell(1, 2).toString(), "Text2A&B");
            QVERIFY(!grid.data({}).isValid());  // as Ctrl+C reads without a current cell
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

    static void configurationsAreBuiltInTheDialogsAndSaved() {
        QtForms forms;
        WindowWorld world(&forms);
        const auto run = [&](const char* command, const QString& steps) {
            performs([&] { world.entry(command).trigger(); }, steps);
        };
        const auto change = [&](const char* key, const QString& steps) {
            performs([&] { world.openNode(key); }, steps);
        };
        world.entry("mnuNewCfg").trigger();
        world.entry("mnuFind").trigger();  // stays open, but is not the parent of dialogs
        run("mnuSetts", "types cmbPort com1; types cmbEdiType USB; Return");
        run("mnuSetts", "types cmbPort com2; enters at cmdExit");
        run("mnuAddPlc", "types txtName Not; enters at cmdExit");
        run("mnuAddPlc",
            "types txtName Pl. a!; composes txtName \u00ad.n\U0001F600t\u00e4; Return");
        run("mnuAddBranch", "types txtBranchName NOT; enters at cmdCancel");
        run("mnuAddBranch", "types txtBranchName FLOOR1; Return");
        run("mnuAddBranch", "types txtBranchName HALL; Return");
        run("mnuAddItem",
            "types txtItemName Lamp; types txtAddress0 1x/8/300; shows addressHint Beyond the bus, "
            "which ends at 31/7/255; Return; finds txtAddress2 300; pastes txtAddress1 1/1/10; "
            "Return");
        run("mnuAddItem",
            "types txtItemName Door; composes txtAddress0 1/1/10; "
            "shows addressHint Also used by Plant.FLOOR1.HALL.Lamp; types txtAddress1 2/1; "
            "shows addressHint ; clicks cmdAdd; finds txtItemName New_Item_2; "
            "enters at cmdAdd; finds txtItemName New_Item_3; clicks cmdAdd; Esc");
        run("mnuAddItem",
            "types txtItemName Vec; types txtAddress0 1; types txtAddress1 3; types txtAddress2 1; "
            "measures; clicks cmdGroup; types txtNumbItems 9; clicks cmdGroup; "
            "finds txtNumbItems 1; Esc; finds txtItemName Vec; as high; clicks cmdGroup; "
            "types txtNumbItems 5; Return; finds txtItemName New_Item_9; as high; Return");
        run("mnuAddItem", "types txtItemName Not; enters at cmdCancel");
        QStringList names = world.names().split(' ');
        names.sort();
        QCOMPARE(names.join(' '),
                 "Door Lamp New_Item_2 New_Item_3 New_Item_5 New_Item_6 "
                 "New_Item_7 New_Item_8 New_Item_9 Vec");
        change("Plant", "types txtName House; Return");
        change("House.FLOOR1", "types txtBranchName GROUND; Return");
        change("House.GROUND.HALL.Lamp",
               "chooses cmbDataType EIS12; types txtElements 4; clicks optLettura1; Return");
        world.entry("mnuSaveCfg").trigger();
        QCOMPARE(world.desktop.messages().back(), "/home/ann/Documents/OPCOlvan.xml saved");
        world.clicks("config");
        QCOMPARE(world.cells(), "House|com1|USB");
        world.clicks("House.GROUND.HALL.Lamp");
        QCOMPARE(world.cells(), "Lamp||EIS12|1/1/10|READWRITE");
        std::string element;
        world.document.items().at("House.GROUND.HALL.Lamp").GetXmlTag(0, element);
        QVERIFY(toQt(element).contains("<flag>TRANSMIT</flag>"));
        QVERIFY(toQt(element).contains("<elements>4</elements>"));
    }

    /// For any type and access right, and a comment that is too long for a field.
    static void confirmingWithoutAChangeKeepsTheItem() {
        QtForms forms;
        WindowWorld world(&forms);
        const std::string comment = std::string(40'000, 'x') + "\n";
        for (const std::string type : {"EIS1", "EIS2_P", "EIS12", "EIS15", "NOEIS", "EIS99", ""})
            for (const std::string right : {"READ", "WRITE", "READWRITE", "ODD"}) {
                world.openText(configuration(
                    plc("Plant", "<tag><name>Lamp</name><comment>" + comment +
                                     "</comment><address>1/2/3</address><eistype>" + type +
                                     "</eistype><flag>TRANSMIT</flag><accessrights>" + right +
                                     "</accessrights><elements>7</elements></tag>")));
                std::string before, after;
                world.document.items().at("Plant.Lamp").GetXmlTag(0, before);
                const bool isKnown = findDataType(type) != nullptr;
                performs([&] { world.openNode("Plant.Lamp"); },
                         "offers cmbDataType " + (isKnown ? "EIS1" : toQt(type)) + "; Return");
                world.document.items().at("Plant.Lamp").GetXmlTag(0, after);
                QCOMPARE(after, before);
                QVERIFY(!std::exchange(world.document.saved, true));
            }
    }
};

std::unique_ptr<QObject> dialogsTest() { return std::make_unique<DialogsTest>(); }

#include "DialogsTest.moc"
