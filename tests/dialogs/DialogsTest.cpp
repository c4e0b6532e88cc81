#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <sstream>
#include <string>

#include "file/CreateXML.h"
#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;
using ::testing::StrEq;

constexpr auto addDevice = &frmEditing::mnuAddPlc_Click;
constexpr auto addBranch = &frmEditing::mnuAddBranch_Click;
constexpr auto addItem = &frmEditing::mnuAddItem_Click;
constexpr auto modify = &frmEditing::TreeView1_DblClick;

const std::string nameTaken = "Name already existing. Please use a different name";
const std::string wrongAddress = "Group Address field is not valid. It must be between 0 and 255.";
const std::string overflow = " Error n. 6  Overflow in ";
const std::string recordTaken =
    " Error n. 457  This key is already associated with an element of this collection in ";
const std::string nodeTaken = " Error n. 35602  Key is not unique in collection in ";
const std::string notFound = " Error n. 35601  Element not found in ";

std::string captions(const auto&... c) { return ((std::string(c.caption) + "|") + ...); }
std::string texts(const auto&... boxes) { return ((boxes.text + "|") + ...); }

void type(frmItems& form, const std::string& name, const std::string& address,
          const std::string& dataType = "EIS1", const std::string& elements = "") {
    form.txtItemName.text = name;
    std::istringstream parts(address);
    for (TextBox& part : form.txtAddress)
        std::getline(parts, part.text, '/');
    form.cmbDataType.text = dataType;
    form.cmbDataType_Click();
    form.txtElements.text = elements;
}

void addVector(frmItems& form, const std::string& count) {
    form.cmdGroup_Click();
    EXPECT_TRUE(form.frmInserimento.visible && form.txtNumbItems.text == "1");
    form.txtNumbItems.text = count;
    form.cmdOkNumber_Click();
}

class Dialogs : public ::testing::Test, protected EditorWorld {
 protected:
    using Shows = void (frmEditing::*)();
    Dialogs() {
        const std::string nested = branch("A", tag("Lamp") + branch("B", tag("Deep")));
        const std::string plant =
            plc("Plant", tag("Light") + tag("Other") + nested + branch("C", ""));
        open("/house.xml", configuration(plant + plc("Annex") + plc("New.A")));
    }
    /// What the user does in the dialog that a command shows.
    template <typename Form>
    void in(Shows command, const std::function<void(Form&)>& user) {
        desktop.forgetMessages();
        forms.whenShown<Form>([&](Form& form) {
            user(form);
            closed = form.closed();
        });
        (editor.*command)();
    }
    bool closed = false;
    void device(Shows command, const std::string& name, const char* timeout = nullptr) {
        in<frmPLC>(command, [&](frmPLC& form) {
            EXPECT_TRUE(command != modify ||
                        form.txtName.text == document.tree().selected()->key());
            form.txtName.text = name;
            form.cmbPort.text = "COM9";
            if (timeout != nullptr) form.txtTimeout.text = timeout;
            form.cmdApply_Click();
        });
    }
    void named(Shows command, const std::string& name) {
        in<frmBranch>(command, [&](frmBranch& form) {
            form.txtBranchName.text = name;
            form.cmdOk_Click();
        });
    }
    void item(Shows command, const std::string& name, const std::string& address,
              const std::string& dataType = "EIS1", const std::string& elements = "") {
        in<frmItems>(command, [&](frmItems& form) {
            type(form, name, address, dataType, elements);
            form.cmdOk_Click();
        });
    }

    /// What the user does for the selected node is refused with this message and changes nothing.
    void expectRefusal(const std::string& key, const std::string& message, bool closes,
                       const std::function<void()>& user) {
        click(key);
        const std::string before = state();
        user();
        EXPECT_THAT(desktop.messages(), ElementsAre(message)) << key;
        EXPECT_EQ(closed, closes) << message;
        EXPECT_EQ(state(), before) << message;
    }

    std::string state() {
        expectTreeAndRegistriesAgree(document);
        CreateXML("/state", document, disk, desktop);
        return disk.files["/state"] + document.tree().selected()->key() +
               (document.saved ? "" : "*") +
               std::to_string(document.branchCounter + document.itemCounter);
    }
};

TEST_F(Dialogs, HaveTheirCaptionsListsAndDefaults) {
    in<frmSetts>(&frmEditing::mnuSetts_Click, [&](frmSetts& form) {
        EXPECT_EQ(captions(form, form.lblPortName, form.lblBaud, form.lblTimeout, form.cmdExit),
                  "EDI Global Settings|Port Name|EDI Type|RX Timeout (ms)|Exit|");
        EXPECT_EQ(texts(form.cmbPort, form.cmbEdiType, form.txtTimeout), "COM1|PEI16x9600|1000|");
        EXPECT_THAT(form.cmbPort.list, ElementsAre("COM1", "COM2", "COM3", "COM4", "COM5", "COM6",
                                                   "COM7", "COM8", "USB"));
        EXPECT_THAT(form.cmbEdiType.list,
                    ElementsAre("PEI16x9600", "PEI10x19200", "USBCOMMON", "USBEMI1", "USBEMI2"));
        form.cmbPort.text = "USB";
        form.cmdApply_Click();
    });
    in<frmPLC>(addDevice, [&](const frmPLC& form) {
        EXPECT_EQ(
            captions(form, form.Label6, form.lblIP, form.lblId, form.lblPassword, form.cmdExit),
            "Phisical Group Properties|Object Name|BCU Port|EDI Type|Receive Timeout (ms)|Exit|");
        EXPECT_EQ(texts(form.txtName, form.cmbPort, form.cmbEdiType, form.txtTimeout),
                  "New Device 4|USB|PEI16x9600|1000|");
        EXPECT_EQ(form.cmbPort.list.size() + form.cmbEdiType.list.size(), 14U);
    });
    click("Plant");
    in<frmBranch>(addBranch, [](const frmBranch& form) {
        EXPECT_EQ(captions(form.Label1, form.cmdCancel) + form.txtBranchName.text,
                  "Branch name:|Cancel|NewBranch4");
    });
    in<frmItems>(addItem, [](frmItems& form) {
        EXPECT_EQ(captions(form, form.lblName, form.Label1, form.lbladdress, form.Label5,
                           form.Label6, form.lblElements, form.Label4, form.Label7),
                  "Group Address Properties|Item Name|Comment|Group Address|Data Type|Access Right|"
                  "Number of Elements|Olvan Flag|INSERT NUMBER OF ITEMS TO ADD|");
        EXPECT_EQ(captions(form.cmdOk, form.cmdAdd, form.cmdGroup, form.cmdCancel),
                  "Add and Exit|Add and Increment|Add Vector....|Exit|");
        EXPECT_THAT(form.optLetturaCaptions, ElementsAre(StrEq("Read"), StrEq("Transmit")));
        EXPECT_THAT(form.cmbAccessRight.list, ElementsAre("READ", "WRITE", "READWRITE"));
        EXPECT_EQ(texts(form.txtItemName, form.txtComment, form.cmbDataType), "New Item 5||EIS1|");
        std::string passing;
        for (int code = 1; code < 300; ++code)
            if (form.txtItemName_KeyPress(code) != 0) passing += static_cast<char>(code);
        EXPECT_EQ(passing, "\b-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
        std::string types;  // and the number of elements of those that have one
        for (const std::string& dataType : form.cmbDataType.list) {
            form.txtElements.text = "14";
            form.cmbDataType.text = dataType;
            form.cmbDataType_Click();
            const bool counts = form.txtElements.enabled && form.lblElements.enabled;
            types += dataType + (counts ? "=" : " ") + form.txtElements.text;
        }
        EXPECT_EQ(types,
                  "EIS1 EIS2_P EIS2_C EIS5 EIS6_P EIS6_D EIS7_M EIS7_S EIS8_P EIS8_C EIS9 EIS10_S "
                  "EIS10_U EIS11_S EIS11_U EIS12=14EIS13 EIS14_S EIS14_U EIS15=14NOEIS=14");
    });
}

TEST_F(Dialogs, OfItemsAndBranchesStayOpenWhenAFieldIsRefused) {
    const std::array<std::string, 5> cases[] = {
        {"", "//", "EIS12", "", "Item name field is empty."},
        {"Light", "//", "EIS12", "", "Group Address field is empty."},
        {"L", "256//", "EIS1", "", wrongAddress},  // one part after the other
        {"L", "1/-1/", "EIS1", "", wrongAddress},
        {"Light", "0/0/256", "EIS12", "", wrongAddress},
        {"Light", "1/2/3", "EIS12", "", "Number of elements field is empty."},
        {"Light", "1/2/3", "EIS15", "-1", "Number of elements field is not valid."},
        {"L", "1/2/3", "NOEIS", "40000", overflow + "AddItemToColl"},
        {"Light", "1/2/9", "EIS1", "", nameTaken},
        {"light", "1/2/9", "EIS1", "", recordTaken + "AddItemToColl"},
        {"C", "1/2/9", "EIS1", "", nodeTaken + "AddItemToColl"}};
    for (const auto& r : cases)
        for (const auto& [command, key] : {std::pair(addItem, "Plant"), {modify, "Plant.Other"}})
            expectRefusal(key, r[4], false, [&, c = command] { item(c, r[0], r[1], r[2], r[3]); });
    const std::pair<std::string, std::string> taken[] = {
        {"C", nameTaken}, {"c", recordTaken + "cmdOk_Click"}, {"Light", nodeTaken + "cmdOk_Click"}};
    for (const auto& [name, message] : taken)
        for (const auto& [command, key] : {std::pair(addBranch, "Plant"), {modify, "Plant.A"}})
            expectRefusal(key, message, false, [&, shows = command, n = name] { named(shows, n); });
}

TEST_F(Dialogs, OfDevicesCloseWhenAFieldIsWrongButNotWhenTheNameIsTaken) {
    const std::array<std::string, 3> cases[] = {
        {"", "", "Object Name field is empty."},
        {"Annex", "", "Receive Timeout field is empty."},
        {"Annex", "10ms", "Receive Timeout field is not correct."},
        {"Annex", "1e3", nameTaken},
        {"annex", "1e3", recordTaken + "cmdApply_Click"},
        {"config", "1e3", nodeTaken + "cmdApply_Click"},
        {"Pump", "99999999999", overflow + "cmdApply_Click"},
        {"New", "1e3", nodeTaken + "cmdApply_Click"}};  // by its branch A, as New.A
    for (const auto& row : cases) {
        const bool closes = row[2].find("field is") != std::string::npos;
        expectRefusal("Plant", row[2], closes, [&] { device(modify, row[0], row[1].c_str()); });
        if (row[0] == "New") continue;
        expectRefusal("config", row[2], closes, [&] { device(addDevice, row[0], row[1].c_str()); });
    }
}

TEST_F(Dialogs, OfDevicesSayWhenTheirCheckItselfFails) {
    struct : FakeDesktop {
        void showMessage(const std::string& text, MessageIcon icon) override {
            FakeDesktop::showMessage(text, icon);
            if (messages().size() == 1) throw std::bad_alloc();
        }
    } failing;
    frmPLC form(document, failing);
    form.cmdApply_Click();
    EXPECT_TRUE(form.closed());
    EXPECT_EQ(failing.messages().back(), "Error. Check fields.");
}

TEST_F(Dialogs, ChangeAnItemInItsRecord) {
    const auto record = document.items().at("Plant.Other");
    record->sAddress = "31/7";
    record->sDataType = "EIS12";
    record->nElements = 7;
    record->bFlag = false;
    click("Plant.Other");
    in<frmItems>(modify, [&](frmItems& form) {
        EXPECT_EQ(form.cmdOk.caption, "Confirm Modify");
        EXPECT_EQ(texts(form.txtItemName, form.txtAddress[0], form.txtAddress[1],
                        form.txtAddress[2], form.cmbAccessRight, form.txtElements),
                  "Other|31|7||READ|7|");
        EXPECT_TRUE(form.optLettura == 1 && !form.cmdAdd.enabled && !form.cmdGroup.enabled);
        type(form, "other", " 31/7 /255", "EIS5", "40000");  // elements in a disabled box
        form.cmdOk_Click();
    });
    EXPECT_TRUE(closed && !document.saved);
    EXPECT_EQ(document.items().find("Plant.other"), record);
    const Node& node = *document.tree().selected();
    EXPECT_EQ(node.key() + node.text() + record->sAddress, "Plant.otherother31/7/255");
    EXPECT_EQ(record->sPlcname + std::to_string(record->nElements), "Plant7");
    expectTreeAndRegistriesAgree(document);
}

TEST_F(Dialogs, AddAVectorUntilAnAddressIsRefused) {
    const std::array<std::string, 6> cases[] = {
        {"Annex", "2.5", "1/1/10", "La mp New_Item_6", "New_Item_7||12|", ""},
        {"New.A", "1e1", "1/1/254", "La mp New_Item_8", "New_Item_9||256|", wrongAddress},
        {"Plant.C", "0", "1/1/0", "", "La mp|Hall|0|", ""},
        {"Plant.C", "-1", "1/1/0", "", "La mp|Hall|0|", ""},
        {"Plant.C", "40000", "1/1/0", "", "La mp|Hall|0|", overflow + "cmdOkNumber_Click"},
        {"Plant.C", "x", "1/1/0", "", "La mp|Hall|0|", "Number of items is not valid."}};
    for (const auto& [key, count, start, added, next, told] : cases) {
        click(key);
        in<frmItems>(addItem, [&, n = count, address = start, offered = next](frmItems& form) {
            type(form, "La mp", address);  // the filter of typed characters is not asked
            form.txtComment.text = "Hall";
            addVector(form, n);
            EXPECT_EQ(form.frmInserimento.visible, n == "x");
            EXPECT_EQ(form.frmMain.enabled, n != "x");
            EXPECT_EQ(texts(form.txtItemName, form.txtComment, form.txtAddress[2]), offered);
        });
        EXPECT_EQ((closed ? "closed" : "") + contentsOf(document.tree().nodeAt(key)), added);
        EXPECT_THAT(desktop.messages(), testing::ElementsAreArray(&told, told.empty() ? 0 : 1));
    }
}

TEST_F(Dialogs, OfTheGlobalSettingsTakeAnything) {
    in<frmSetts>(&frmEditing::mnuSetts_Click, [&](frmSetts& form) {
        for (const auto& [text, stored] :
             {std::pair("250ms", 250), {"abc", 0}, {"2.5", 2}, {"3.5", 4}, {"", 0}, {"-7", -7}}) {
            form.cmbPort.text = "";
            form.cmbEdiType.text = "other";
            form.txtTimeout.text = text;
            form.cmdExit_Click();
            EXPECT_NE(document.settings().timeout, stored);
            form.cmdApply_Click();
            EXPECT_EQ(document.settings().timeout, stored) << text;
        }
    });
    EXPECT_EQ(document.settings().port + document.settings().ediType, "other");
    EXPECT_TRUE(std::exchange(document.saved, false));
    in<frmSetts>(&frmEditing::mnuSetts_Click, [](frmSetts& form) {
        form.cmbPort.text = "USB";
        form.txtTimeout.text = "99999999999";
        form.cmdApply_Click();
    });
    EXPECT_TRUE(closed && applicationEnded && exitStatus != 0);
    editor.Form_Unload();  // as the window does then: no question is asked
    EXPECT_THAT(desktop.messages(), ElementsAre(overflow + "cmdApply_Click"));
    EXPECT_EQ(document.settings().port + std::to_string(document.settings().timeout), "USB-7");
}

TEST_F(Dialogs, BuildAConfigurationFromNothing) {
    editor.mnuNewCfg_Click();
    device(addDevice, "Plant", "1e4");
    EXPECT_EQ(std::to_string(document.deviceCounter) + columns().substr(0, 9), "1Item Name");
    named(addBranch, "Floor");
    in<frmBranch>(addBranch, &frmBranch::cmdOk_Click);
    item(addItem, "Lamp", "1/1/3");
    in<frmItems>(addItem, [](frmItems& form) {
        type(form, form.txtItemName.text, "1/1/10");
        for (int i = 0; i < 3; ++i)
            form.cmdAdd_Click();
        addVector(form, "5");
        form.cmdCancel_Click();
    });
    click("Plant");
    for (const char* name : {"plant", "House"})
        device(modify, name);
    click("House.Floor");
    for (const char* name : {"FLOOR", "", "Upper"})
        named(modify, name);
    click("House.Upper.NewBranch1.Lamp");
    item(modify, "Lamp", "1/1/3", "EIS12", "4");
    editor.mnuSaveCfg_Click();
    std::string expected =
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<QUONEibCfg>\r\n"
        "\t<SETTINGS port=\"COM1\" editype=\"PEI16x9600\" timeout=\"1000\"/>\r\n\t<OPC_DA>\r\n"
        "\t\t<DEVICE name=\"House\" port=\"COM9\" editype=\"PEI16x9600\" timeout=\"10000\">\r\n"
        "\t\t\t<tags>\r\n\t\t\t\t<Upper>\r\n\t\t\t\t\t<NewBranch1>\r\n";
    for (int i = 0; i < 9; ++i) {
        clsItem record;
        record.sName = i == 0 ? "Lamp" : (i == 1 ? "New Item " : "New_Item_") + std::to_string(i);
        record.sAddress = "1/1/" + std::to_string(i == 0 ? 3 : 9 + i);
        record.sDataType = i == 0 ? "EIS12" : "EIS1";
        record.nElements = 4;
        record.bFlag = true;
        record.sAccessRight = "READWRITE";
        expected += record.GetXmlTag(6) + "\r\n";
    }
    expected += "\t\t\t\t\t</NewBranch1>\r\n\t\t\t\t</Upper>\r\n\t\t\t</tags>\r\n";
    expected += "\t\t</DEVICE>\r\n\t</OPC_DA>\r\n</QUONEibCfg>\r\n";
    EXPECT_EQ(disk.files["/home/ann/Documents/OPCOlvan.xml"], expected);
    expectTreeAndRegistriesAgree(document);
}

TEST_F(Dialogs, RefillTheListAfterADeviceAndAfterNewItemsOnly) {
    click("Plant.A");
    const std::string lamp = "Lamp||EIS1|1/2/3|READ|0A03\n";
    document.tree().setText(*document.tree().selected(), "E");
    in<frmBranch>(modify, &frmBranch::cmdOk_Click);  // the name it offers is the node's text
    EXPECT_EQ(document.tree().selected()->key() + (document.saved ? "" : rows()), "Plant.E" + lamp);
    selectRow(0);
    editor.ListView1_DblClick();
    EXPECT_EQ(desktop.messages().back(), notFound + "ListView1_DblClick") << "its key is gone";
    named(addBranch, "");
    EXPECT_EQ(document.tree().selected()->key() + rows(), "Plant.E." + lamp);
    item(addItem, "L", "1/2/3");
    EXPECT_EQ(document.tree().selected()->key() + rows(), "Plant.E.L||EIS1|1/2/3|READWRITE|0A03\n");
    click("config");
    editor.TreeView1_DblClick();  // shows none
    selectRow(1);
    device(&frmEditing::ListView1_DblClick, "House");
    EXPECT_EQ(document.tree().selected()->key() + rows(), "House");
    const std::string before = state();
    in<frmBranch>(addBranch, &frmBranch::cmdCancel_Click);
    in<frmPLC>(addDevice, &frmPLC::cmdExit_Click);
    in<frmItems>(addItem, &frmItems::cmdCancel_Click);
    EXPECT_EQ(state(), before);
}

TEST_F(Dialogs, AddTheLast256ItemsOfAFullBranchAtOnce) {
    std::string full;
    for (int i = 0; i < 65280; ++i)
        full += tag("Item_" + std::to_string(i));
    open("/full.xml", configuration(plc("Plant", branch("A", full))));
    click("Plant.A");
    struct : ListView::Listener {
        void aboutToReset() override {}
        void reset() override { ++resets; }
        void columnsBuilt() override {}
        void viewChanged() override {}
        int resets = 0;
    } listener;
    editor.ListView1.setListener(&listener);
    [[maybe_unused]] const std::clock_t start = std::clock();
    in<frmItems>(addItem, [](frmItems& form) {
        type(form, "Last", "1/1/0");
        addVector(form, "256");
    });
#ifdef NDEBUG
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
#endif
    EXPECT_EQ(listener.resets, 1);
    EXPECT_EQ(editor.ListView1.rows().size(), 65536U);
}

}  // namespace
