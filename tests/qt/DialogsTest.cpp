// The dialogs in their windows, filled in by hand.

#include "qt/QtForms.h"
#include "qt/Reading.h"
#include "qt/WindowWorld.h"

namespace {

/// One of the user's steps in a dialog: "types FIELD TEXT", over what is there; "composes FIELD
/// TEXT", as an input method enters several characters at once; "chooses FIELD TEXT"; "clicks
/// BUTTON"; "enters at BUTTON", with the keyboard; "finds FIELD TEXT" to be typed over; or a key.
void act(QWidget& dialog, const QString& step) {
    const QString verb = step.section(' ', 0, step.startsWith("enters") ? 1 : 0);
    const QString name = step.mid(verb.size() + 1).section(' ', 0, 0);
    const QString text = step.mid(verb.size() + name.size() + 2);
    auto* widget = dialog.findChild<QWidget*>(name);
    auto* combo = qobject_cast<QComboBox*>(widget);
    auto* edit = combo != nullptr ? combo->lineEdit() : qobject_cast<QLineEdit*>(widget);
    if (verb == "types") {
        edit->selectAll();
        QTest::keyClicks(widget, text);
    } else if (verb == "composes") {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(edit, &event);
    } else if (verb == "chooses") {
        combo->setCurrentText(text);
    } else if (verb == "clicks") {
        QTest::mouseClick(widget, Qt::LeftButton);
    } else if (verb == "enters at") {
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_Return);
    } else if (verb == "finds") {
        QVERIFY2(edit->hasFocus() && edit->selectedText() == text, qPrintable(step));
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
    static void aConfigurationBuiltByHandIsSavedAsItIs() {
        QtForms forms;
        WindowWorld world(&forms);
        const auto run = [&](const char* command, const QString& steps) {
            inDialog([&] { world.entry(command).trigger(); }, steps);
        };
        const auto change = [&](const char* key, const QString& steps) {
            inDialog([&] { world.openNode(key); }, steps);
        };
        world.entry("mnuNewCfg").trigger();
        world.entry("mnuFind").trigger();  // stays open, but no dialog belongs to it
        run("mnuSetts", "types cmbPort com1; types cmbEdiType USB; Return");
        run("mnuSetts", "types cmbPort com2; enters at cmdExit");
        run("mnuAddPlc", "types txtName Not; enters at cmdExit");
        run("mnuAddPlc",
            "types txtName Pl. a!; composes txtName \u00ad.n\U0001F600t\u00e4; Return");
        run("mnuAddBranch", "types txtBranchName NOT; enters at cmdCancel");
        run("mnuAddBranch", "types txtBranchName FLOOR1; Return");
        run("mnuAddBranch", "types txtBranchName HALL; Return");
        run("mnuAddItem",
            "types txtItemName Lamp; types txtAddress0 1; types txtAddress1 1x; "
            "types txtAddress2 10; Return");
        run("mnuAddItem",
            "types txtItemName Door; types txtAddress0 1; types txtAddress1 2; "
            "types txtAddress2 1; clicks cmdAdd; finds txtItemName New_Item_2; "
            "enters at cmdAdd; finds txtItemName New_Item_3; clicks cmdAdd; Esc");
        run("mnuAddItem",
            "types txtItemName Vec; types txtAddress0 1; types txtAddress1 3; types txtAddress2 1; "
            "clicks cmdGroup; types txtNumbItems 9; clicks cmdGroup; finds txtNumbItems 1; "
            "types txtNumbItems 5; Return; finds txtItemName New_Item_9; Esc");
        run("mnuAddItem", "types txtItemName Not; enters at cmdCancel");
        QStringList names = world.names().split(' ');
        names.sort();
        QCOMPARE(names.join(' '),
                 "Door Lamp New_Item_2 New_Item_3 New_Item_5 New_Item_6 "
                 "New_Item_7 New_Item_8 Vec");
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

    /// Whatever its type and right, and with a comment that no field can show whole.
    static void anItemConfirmedWithoutAChangeStaysAsItIs() {
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
                inDialog([&] { world.openNode("Plant.Lamp"); }, "Return");
                world.document.items().at("Plant.Lamp").GetXmlTag(0, after);
                QCOMPARE(after, before);
                QVERIFY(!std::exchange(world.document.saved, true));
            }
    }
};

std::unique_ptr<QObject> dialogsTest() { return std::make_unique<DialogsTest>(); }

#include "DialogsTest.moc"
