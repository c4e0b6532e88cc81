#include "support/EditorWorld.h"

namespace {

class FindTest : public ::testing::Test, protected EditorWorld {
 protected:
    FindTest() {
        const std::string up = branch("UP", branch("HALLWAY", tag("Ölamp")));
        const std::string mainHall = plc("MainHall", up + tag("hall1"));
        open("/house.xml", configuration(mainHall + plc("Hallo")));
        click("MainHall");
        editor.mnuFind_Click();
    }
    /// The selected node after the user has searched so, and the listed rows.
    std::string found(bool next, const std::string& text) {
        forms.find->txtFind.text = text;
        next ? forms.find->cmdNext_Click() : forms.find->cmdFind_Click();
        return told() + shown();
    }
};

TEST_F(FindTest, SelectsTheFirstNodeAddedThatBeginsSoInWhateverCase) {
    const std::tuple<const char*, std::string, int> searches[] = {
        {"", "MainHall", 0},
        {"all", "MainHall", 0},
        {"hallo.", "MainHall", 0},
        {"hall", "MainHall.UP.HALLWAY", 1},
        {"HALLO", "Hallo", 2},
        {"/HOUSE", "config", 3},
        {"öLA", "MainHall.UP.HALLWAY.Ölamp", 4}};
    for (const auto& [text, key, matches] : searches) {
        editor.activeControl = frmEditing::ActiveControl::list;
        document.tree().setExpanded(document.tree().nodeAt("MainHall.UP"), false);
        EXPECT_EQ(found(false, text), key + ": MainHall.hall1") << text;
        EXPECT_EQ(timesTreeFocused, matches);
        EXPECT_EQ(editor.activeControl == frmEditing::ActiveControl::tree, matches > 0);
    }
    EXPECT_TRUE(document.tree().nodeAt("MainHall.UP").expanded());
}

TEST_F(FindTest, NextSkipsAsManyMatchesAsItWasPressed) {
    for (const std::string match : {"MainHall.hall1", "Hallo", "Hallo", "Hallo"})
        EXPECT_EQ(found(true, "hall"), match + ": MainHall.hall1");
    found(false, "hall");
    editor.mnuFind_Click();  // neither this, while it is open, nor the first button resets it
    EXPECT_EQ(found(true, "h"), "Hallo: MainHall.hall1");
    for (const std::string match : {"MainHall.hall1", "Hallo"}) {
        forms.find->cmdCancel_Click();
        EXPECT_FALSE(forms.find->loaded());
        editor.mnuFind_Click();
        EXPECT_EQ(forms.find->txtFind.text, "");
        if (match == "Hallo") found(true, "");  // counts all the same
        EXPECT_EQ(found(true, "h"), match + ": MainHall.hall1");
    }
    EXPECT_TRUE(editor.Form_Unload() && forms.find == nullptr);
}

}  // namespace
