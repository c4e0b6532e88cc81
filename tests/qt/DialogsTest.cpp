// The dialogs in their windows, filled in by hand.
#include <QComboBox>
#include <QLabel>
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
        auto& edit = *dialog_.findChild<QLineEdit*>(field);
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        return *this;
    }
    User& chooses(const char* field, const char* text) {
        dialog_.findChild<QComboBox*>(field)->setCurrentText(text);
        return *this;
    }
    User& presses(const char* button) {
        QTest::mouseClick(dialog_.findChild<QPushButton*>(button), Qt::LeftButton);
        return *this;
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
        run("mnuAddPlc", [](User& user) { user.types("txtName", "Pl. a!nt").enters(); });
        run("mnuAddBranch", [](User& user) { user.types("txtBranchName", "FLOOR1").enters(); });
        run("mnuAddBranch", [](User& user) { user.types("txtBranchName", "HALL").enters(); });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Lamp").address("1", "1x", "10").enters();
        });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Door").address("1", "2", "1");
            user.presses("cmdAdd").presses("cmdAdd").presses("cmdAdd").leaves();
        });
        run("mnuAddItem", [](User& user) {
            user.types("txtItemName", "Vec").address("1", "3", "1");
            user.presses("cmdGroup").types("txtNumbItems", "5").enters();
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
                     "\t<SETTINGS port=\"COM1\" editype=\"PEI16x9600\" timeout=\"1000\"/>\r\n"
                     "\t<OPC_DA>\r\n\t\t<DEVICE name=\"House\" port=\"COM1\" "
                     "editype=\"PEI16x9600\" timeout=\"1000\">\r\n\t\t\t<tags>\r\n"
                     "\t\t\t\t<GROUND>\r\n\t\t\t\t\t<HALL>\r\n" +
                     hall +
                     "\t\t\t\t\t</HALL>\r\n\t\t\t\t</GROUND>\r\n\t\t\t</tags>\r\n"
                     "\t\t</DEVICE>\r\n\t</OPC_DA>\r\n</QUONEibCfg>\r\n"));
        QCOMPARE(world.desktop.messages().back(), "/home/ann/Documents/OPCOlvan.xml saved");
    }

    /// Fields have names, labels lead to them, and the first one has the keyboard.
    static void dialogsAreReadyForTheKeyboard() {
        Document document;
        FakeDesktop desktop;
        QtForms forms;
        const auto check = [&](auto& form) {
            form.Form_Load();
            QTimer::singleShot(50, [] {
                QWidget* dialog = QApplication::activeModalWidget();
                QVERIFY(dialog != nullptr);
                QVERIFY(dialog->focusWidget() != nullptr);
                for (auto* field : dialog->findChildren<QLineEdit*>())
                    if (qobject_cast<QComboBox*>(field->parentWidget()) == nullptr) {
                        QVERIFY2(!field->accessibleName().isEmpty(),
                                 qPrintable(field->objectName()));
                    }
                for (auto* label : dialog->findChildren<QLabel*>())
                    QVERIFY(label->text() == "/" || label->buddy() != nullptr);
                QTest::keyClick(dialog, Qt::Key_Escape);
            });
            forms.showModal(form);
            QVERIFY(form.closed());
        };
        frmItems items(document, desktop);
        frmPLC device(document, desktop);
        frmBranch branch(document, desktop);
        frmSetts settings(document.settings());
        check(items);
        check(device);
        check(branch);
        check(settings);
        QTimer::singleShot(50, [] { QApplication::activeModalWidget()->close(); });
        forms.showAbout();
    }
};

std::unique_ptr<QObject> dialogsTest() { return std::make_unique<DialogsTest>(); }

#include "DialogsTest.moc"
