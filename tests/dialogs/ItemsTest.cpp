// Input into the fields of the item dialog.
#include "support/ScriptedUser.h"

namespace {

/// An item dialog in a configuration with two items. With `modify` it changes the first one.
struct ItemDialogWorld {
    explicit ItemDialogWorld(bool modify = false) {
        world.open("/house.xml",
                   configuration(plc("Plant", branch("HALL", tag("Lamp")) + tag("Door"))));
        const std::string node = modify ? "Plant.HALL.Lamp" : "Plant";
        form.emplace(world.document, world.desktop, world.document.tree().nodeAt(node), modify);
        form->Form_Load();
        world.desktop.forgetMessages();
    }

    void setAddress(const std::string& address) {
        const auto parts = split(address, "/");
        for (std::size_t i = 0; i < parts.size(); ++i)
            form->txtAddress.at(i).text = parts[i];
    }
    std::string address() const {
        return form->txtAddress[0].text + "|" + form->txtAddress[1].text + "|" +
               form->txtAddress[2].text;
    }
    /// The fields that get the focus.
    std::string focus() {
        std::string all;
        const auto look = [&](const char* name, TextBox& box) {
            if (std::exchange(box.getsFocus, false)) all += name;
        };
        look("name", form->txtItemName);
        look("main", form->txtAddress[0]);
        look("middle", form->txtAddress[1]);
        look("sub", form->txtAddress[2]);
        look("elements", form->txtElements);
        look("count", form->txtNumbItems);
        return all;
    }

    EditorWorld world;
    std::optional<frmItems> form;
};

TEST(ItemDialog, ShowsDuplicateAndInvalidAddresses) {
    const std::string beyond = "Beyond the bus, which ends at 31/7/255";
    for (const bool modify : {false, true}) {
        ItemDialogWorld dialog(modify);
        const std::string other =
            modify ? "Also used by Plant.Door" : "Also used by Plant.HALL.Lamp";
        for (const auto& [address, hint] : std::vector<std::pair<std::string, std::string>>{
                 {"1/2/3", other},
                 {" 01/2 /003", other},
                 {"1/2/4", ""},
                 {"0/10/3", beyond},  // the same index as 1/2/3, but not valid on the bus
                 {"31/7/255", ""},
                 {"32/7/255", beyond},
                 {"1/2/99999999999", beyond},
                 {"1/2/3.0", ""},
                 {"1/2/", ""}}) {
            dialog.setAddress(address);
            EXPECT_EQ(dialog.form->addressHint(), hint) << address << modify;
        }
    }
}

TEST(ItemDialog, AcceptsAddressesWithSlashes) {
    for (const auto& [part, text, address, focus] :
         std::vector<std::tuple<std::size_t, std::string, std::string, std::string>>{
             {0, "/", "7|8|9", "middle"},
             {2, "/", "7|8|9", ""},
             {0, "1/1/10", "1|1|10", "sub"},
             {2, " 1/ 1 /10 ", "1|1|10", "sub"},
             {0, "4/5", "4|5|9", "middle"},
             {0, "1/2/3/4", "7|8|9", ""}}) {
        ItemDialogWorld dialog;
        dialog.setAddress("7/8/9");
        EXPECT_EQ(dialog.form->enterAddress(part, text), !focus.empty()) << part << text;
        EXPECT_EQ(dialog.address(), address) << part << text;
        EXPECT_EQ(dialog.focus(), focus) << part << text;
    }
}

TEST(ItemDialog, FocusesTheFieldThatAMessageIsAbout) {
    for (const auto& [name, address, elements, focus] :
         std::vector<std::tuple<std::string, std::string, std::string, std::string>>{
             {"", "1/1/1", "1", "name"},
             {"Door", "1/1/1", "1", "name"},
             {"DOOR", "1/1/1", "1", "name"},
             {"Gate", "/1/1", "1", "main"},
             {"Gate", "1/256/1", "1", "middle"},
             {"Gate", "1/1/-1", "", "sub"},
             {"Gate", "1/1/1", "", "elements"},
             {"Gate", "1/1/1", "32768", "elements"}}) {
        ItemDialogWorld dialog;
        dialog.form->txtItemName.text = name;
        dialog.setAddress(address);
        dialog.form->cmbDataType.text = "EIS15";
        dialog.form->cmbDataType_Click();
        dialog.form->txtElements.text = elements;
        dialog.form->cmdAdd_Click();
        EXPECT_EQ(dialog.focus(), focus) << name << address << elements;
        EXPECT_EQ(dialog.world.desktop.messages().size(), 1U) << name << address << elements;
    }
    ItemDialogWorld dialog;
    dialog.setAddress("1/1/255");
    dialog.form->cmdGroup_Click();
    EXPECT_EQ(dialog.focus(), "count");
    dialog.form->txtNumbItems.text = "x";
    dialog.form->cmdOkNumber_Click();
    EXPECT_EQ(dialog.focus(), "count");
    dialog.form->closeCountPanel();
    EXPECT_TRUE(dialog.form->frmMain.enabled && !dialog.form->frmInserimento.visible);
    EXPECT_EQ(dialog.focus(), "name");

    Node& door = dialog.world.document.tree().nodeAt("Plant.Door");
    frmPLC device(dialog.world.document, dialog.world.desktop, door, false);
    device.Form_Load();
    device.txtTimeout.text = "2147483648";
    device.cmdApply_Click();
    EXPECT_TRUE(device.txtTimeout.getsFocus && !device.txtName.getsFocus && !device.closed());

    const std::vector<Node*> items{&door, &dialog.world.document.tree().nodeAt("Plant.HALL.Lamp")};
    CommonProperties several(dialog.world.document, dialog.world.desktop, items);
    several.Form_Load();
    several.fields.cmbDataType.text = "EIS15";
    several.cmbDataType_Click();
    for (const char* elements : {"", "-1", "32768"}) {
        several.fields.txtElements.text = elements;
        several.cmdOk_Click();
        EXPECT_TRUE(std::exchange(several.fields.txtElements.getsFocus, false) &&
                    !several.closed());
    }
}

TEST(KeyFilters, AcceptOnlyTheCharactersOfTheField) {
    const auto passing = [](int (*filter)(int)) {
        std::string all;
        for (int code = 0; code < 300; ++code)
            if (const int passed = filter(code); passed != 0)
                all += passed == code ? static_cast<char>(code) : '!';
        return all;
    };
    EXPECT_EQ(passing(FilterNumericKey), "\b\t\n\r -.0123456789");
    EXPECT_EQ(passing(filterNameKey),
              "\b-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

}  // namespace
