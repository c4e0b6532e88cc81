// The dialogs in their windows, filled in by hand.
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "qt/QtForms.h"
#include "qt/WindowWorld.h"

namespace {

/// One dialog and what its user does in it.
class User {
 public:
    explicit User(QWidget& dialog) : dialog_(dialog) {}

    User& types(const char* field, const char* text) {
        auto* widget = dialog_.findChild<QWidget*>(field);
        const auto* combo = qobject_cast<QComboBox*>(widget);
        (combo != nullptr ? combo->lineEdit() : static_cast<QLineEdit*>(widget))->selectAll();
        QTest::keyClicks(widget, text);
        return *this;
    }
    User& chooses(const char* field, const char* text) {
        dialog_.findChild<QComboBox*>(field)->setCurrentText(text);
        return *this;
    }
    /// Several characters at once, as an input method enters them.
    User& composes(const char* field, const QString& text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(dialog_.findChild<QLineEdit*>(field), &event);
        return *this;
    }
    User& presses(const char* button) {
        QTest::mouseClick(dialog_.findChild<QPushButton*>(button), Qt::LeftButton);
        return *this;
    }
    /// With the keyboard.
    User& entersAt(const char* button) {
        dialog_.findChild<QPushButton*>(button)->setFocus();
        QTest::keyClick(dialog_.focusWidget(), Qt::Key_Return);
        return *this;
    }
    /// The field has the focus, all of that text selected.
    User& isAt(const char* field, const char* text) {
        const auto* edit = qobject_cast<QLineEdit*>(dialog_.focusWidget());
        if (edit == nullptr || edit->objectName() != field || edit->selectedText() != text) {
            ADD_FAILURE() << field << " is not to be typed over";
        }
        return *this;
    }
    /// Tabs to the last of the controls, presses Enter there and tells which were passed.
    QString walks(const QString& last) {
        QStringList names{dialog_.focusWidget()->objectName()};
        while (names.back() != last && names.size() < 20) {
            QTest::keyClick(dialog_.focusWidget(), Qt::Key_Tab);
            names.append(dialog_.focusWidget()->objectName());
        }
        QTest::keyClick(dialog_.focusWidget(), Qt::Key_Return);
        return names.join(' ');
    }
    User& address(const char* main, const char* middle, const char* sub) {
        return types("txtAddress0", main).types("txtAddress1", middle).types("txtAddress2", sub);
    }
    void enters() { QTest::keyClick(&dialog_, Qt::Key_Return); }
    void leaves() { QTest::keyClick(&dialog_, Qt::Key_Escape); }

 private:
    QWidget& dialog_;
};

/// What the user does in the dialog that opens next.
void inNext(const std::function<void(User&)>& act) {
    QTimer::singleShot(50, [act] {
        QWidget* dialog = QApplication::activeModalWidget();
        QVERIFY(dialog != nullptr);
        User user(*dialog);
        act(user);
    });
}

std::string itemLines(const std::string& name, const std::string& address,
                      const std::string& type = "EIS1", const std::string& elements = "") {
    const std::string indent = "\r\n\t\t\t\t\t\t\t";
    return "\t\t\t\t\t\t<tag>" + indent + "<name>" + name + "</name>" + indent +
           "<comment></comment>" + indent + "<address>" + address + "</address>" + indent +
           "<eistype>" + type + "</eistype>" + indent + "<flag>READ</flag>" + indent +
           "<accessrights>READWRITE</accessrights>" +
           (elements.empty() ? "" : indent + "<elements>" + elements + "</elements>") +
           "\r\n\t\t\t\t\t\t</tag>\r\n";
}

}  // namespace

class DialogsTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void aConfigurationBuiltByHandIsSavedAsItIs() {
        QtForms forms;
        WindowWorld world(nullptr, &forms);
        const auto run = [&](const char* command, const std::function<void(User&)>& act) {
            inNext(act);
            world.entry(command).trigger();
        };
        const auto change = [&](const char* key, const std::function<void(User&)>& act) {
            inNext(act);
            doubleClick(world.tree, world.spotOnNode(key));
        };
        world.entry("mnuNewCfg").trigger();
        world.entry("mnuFind").trigger();  // stays open, but no dialog belongs to it
        run("mnuSetts", [&](User& user) {
            QCOMPARE(QApplication::activeModalWidget()->parentWidget(), &world.window);
            user.types("cmbPort", "com1").types("cmbEdiType", "USB").enters();
        });
        run("mnuAddPlc", [](User& user) {
            user.types("txtName", "Pl. a!")
                .composes("txtName", "\u00ad.n\U0001F600t\u00e4")
                .enters();
        });
        run("mnuAddBranch", [](User& user) { user.types("txtBranchName", "FLOOR1").enters(); });
        run("mnuAddBranch", [](User& user) { user.types("txtBranchName", "HALL").enters(); });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Lamp").address("1", "1x", "10").enters();
        });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Door").address("1", "2", "1");
            user.presses("cmdAdd").isAt("txtItemName", "New_Item_2");
            user.entersAt("cmdAdd").isAt("txtItemName", "New_Item_3");
            user.presses("cmdAdd").leaves();
        });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Vec").address("1", "3", "1");
            user.presses("cmdGroup").types("txtNumbItems", "9").presses("cmdGroup");
            user.isAt("txtNumbItems", "1").types("txtNumbItems", "5").enters();
            user.leaves();
        });
        QCOMPARE(world.names(),
                 "Door Lamp New_Item_2 New_Item_3 New_Item_5 New_Item_6 New_Item_7 New_Item_8 Vec");
        change("Plant", [](User& user) { user.types("txtName", "House").enters(); });
        change("House.FLOOR1", [](User& user) { user.types("txtBranchName", "GROUND").enters(); });
        change("House.GROUND.HALL.Lamp", [](User& user) {
            user.chooses("cmbDataType", "EIS12").types("txtElements", "4").enters();
        });
        world.entry("mnuSaveCfg").trigger();

        const std::string saved = world.disk.files["/home/ann/Documents/OPCOlvan.xml"];
        const std::string hall =
            itemLines("Door", "1/2/1") + itemLines("Lamp", "1/1/10", "EIS12", "4") +
            itemLines("New_Item_2", "1/2/2") + itemLines("New_Item_3", "1/2/3") +
            itemLines("New_Item_5", "1/3/2") + itemLines("New_Item_6", "1/3/3") +
            itemLines("New_Item_7", "1/3/4") + itemLines("New_Item_8", "1/3/5") +
            itemLines("Vec", "1/3/1");
        QCOMPARE(QByteArray::fromStdString(saved),
                 QByteArray::fromStdString(
                     "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<QUONEibCfg>\r\n"
                     "\t<SETTINGS port=\"com1\" editype=\"USB\" timeout=\"1000\"/>\r\n"
                     "\t<OPC_DA>\r\n\t\t<DEVICE name=\"House\" port=\"com1\" "
                     "editype=\"USB\" timeout=\"1000\">\r\n\t\t\t<tags>\r\n"
                     "\t\t\t\t<GROUND>\r\n\t\t\t\t\t<HALL>\r\n" +
                     hall +
                     "\t\t\t\t\t</HALL>\r\n\t\t\t\t</GROUND>\r\n\t\t\t</tags>\r\n"
                     "\t\t</DEVICE>\r\n\t</OPC_DA>\r\n</QUONEibCfg>\r\n"));
        QCOMPARE(world.desktop.messages().back(), "/home/ann/Documents/OPCOlvan.xml saved");
    }

    /// Whatever its type and right, and with a comment that no field can show whole.
    static void anItemConfirmedWithoutAChangeStaysAsItIs() {
        QtForms forms;
        WindowWorld world(nullptr, &forms);
        world.openText(configuration(plc("Plant", tag("Lamp"))));
        clsItem& item = *world.document.items().at("Plant.Lamp");
        item.sComment = std::string(40'000, 'x') + "\n";
        item.bFlag = false;
        item.nElements = 7;
        for (const char* type : {"EIS1", "EIS2_P", "EIS12", "EIS15", "NOEIS", "EIS99", ""})
            for (const char* right : {"READ", "WRITE", "READWRITE", "ODD"}) {
                item.sDataType = type;
                item.sAccessRight = right;
                const std::string before = item.GetXmlTag(0);
                inNext([](User& user) { user.enters(); });
                doubleClick(world.tree, world.spotOnNode("Plant.Lamp"));
                QCOMPARE(item.GetXmlTag(0), before);
                QVERIFY(!std::exchange(world.document.saved, true));
            }
    }

    /// Tab leads from field to field and then to the buttons; Enter presses the last one.
    static void keysLeadInReadingOrderToTheButtonThatStoresNothing() {
        Document document;
        document.startAt("/new.xml");
        FakeDesktop desktop;
        QtForms forms;
        const auto walk = [&](auto& form, const QString& order) {
            form.Form_Load();
            QString walked;
            inNext([&](User& user) { walked = user.walks(order.section(' ', -1)); });
            forms.showModal(form);
            QCOMPARE(walked, order);
            QVERIFY(form.closed());
        };
        frmItems items(document, desktop);
        frmPLC device(document, desktop);
        frmBranch branch(document, desktop);
        frmSetts settings(document.settings());
        walk(items,
             "txtItemName txtComment txtAddress0 txtAddress1 txtAddress2 cmbDataType "
             "cmbAccessRight optLettura0 cmdOk cmdAdd cmdGroup cmdCancel");
        walk(device, "txtName cmbPort cmbEdiType txtTimeout cmdApply cmdExit");
        walk(branch, "txtBranchName cmdOk cmdCancel");
        walk(settings, "cmbPort cmbEdiType txtTimeout cmdApply cmdExit");
        QVERIFY(desktop.messages().empty() && !document.deviceDialog.confirmed);
    }
};

std::unique_ptr<QObject> dialogsTest() { return std::make_unique<DialogsTest>(); }

#include "DialogsTest.moc"
