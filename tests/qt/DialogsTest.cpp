// The dialogs in their windows, filled in with mouse and keyboard.

#include "model/DataTypes.h"
#include "qt/QtForms.h"
#include "qt/Reading.h"
#include "qt/WindowWorld.h"

namespace {

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

void inDialog(const std::function<void()>& open, const QString& steps) {
    ::inDialog(open, [&](QWidget& dialog) {
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
    static void configurationsAreBuiltInTheDialogsAndSaved() {
        QtForms forms;
        WindowWorld world(&forms);
        const auto run = [&](const char* command, const QString& steps) {
            inDialog([&] { world.entry(command).trigger(); }, steps);
        };
        const auto change = [&](const char* key, const QString& steps) {
            inDialog([&] { world.openNode(key); }, steps);
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
        world.clickNode("config");
        QCOMPARE(world.cells(), "House|com1|USB");
        world.clickNode("House.GROUND.HALL.Lamp");
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
                inDialog([&] { world.openNode("Plant.Lamp"); },
                         "offers cmbDataType " + (isKnown ? "EIS1" : toQt(type)) + "; Return");
                world.document.items().at("Plant.Lamp").GetXmlTag(0, after);
                QCOMPARE(after, before);
                QVERIFY(!std::exchange(world.document.saved, true));
            }
    }
};

std::unique_ptr<QObject> dialogsTest() { return std::make_unique<DialogsTest>(); }

#include "DialogsTest.moc"
