#include <gtest/gtest.h>

#include "support/EditorWorld.h"

namespace {

class FindTest : public ::testing::Test, protected EditorWorld {
 protected:
    FindTest() {
        const std::string up = branch("UP", branch("HALLWAY", tag("Ölamp")));
        open("/house.xml", configuration(plc("MainHall", up + tag("hall1")) + plc("Hallo")));
        click("MainHall");
        editor.mnuFind_Click();
    }
    enum Button { first, next };
    /// The selected node after the user has searched so, and the listed rows.
    std::string found(Button button, const std::string& text) {
        forms.find->txtFind.text = text;
        button == first ? forms.find->cmdFind_Click() : forms.find->cmdNext_Click();
        EXPECT_EQ(told(), "");
        return shown();
    }
};

TEST_F(FindTest, SelectsTheFirstNodeAddedThatBeginsSoInWhateverCase) {
    for (const auto& [text, key, matches] : {std::tuple("", "MainHall", 0),
                                             {"all", "MainHall", 0},
                                             {"hallo.", "MainHall", 0},
                                             {"hall", "MainHall.UP.HALLWAY", 1},
                                             {"HALLO", "Hallo", 2},
                                             {"/HOUSE", "config", 3},
                                             {"öLA", "MainHall.UP.HALLWAY.Ölamp", 4}}) {
        editor.activeControl = frmEditing::ActiveControl::list;
        document.tree().setExpanded(document.tree().nodeAt("MainHall.UP"), false);
        EXPECT_EQ(found(first, text), key + std::string(": MainHall.hall1")) << text;
        EXPECT_EQ(timesTreeFocused, matches);
        EXPECT_EQ(editor.activeControl == frmEditing::ActiveControl::tree, matches > 0);
    }
    EXPECT_TRUE(document.tree().nodeAt("MainHall.UP").expanded());
}

TEST_F(FindTest, NextSkipsAsManyMatchesAsItWasPressed) {
    for (const char* match : {"MainHall.hall1", "Hallo", "Hallo", "Hallo"})
        EXPECT_EQ(found(next, "hall"), match + std::string(": MainHall.hall1"));
    found(first, "hall");
    editor.mnuFind_Click();  // neither this, while it is open, nor the first button resets it
    EXPECT_EQ(found(next, "h"), "Hallo: MainHall.hall1");
    forms.find->cmdCancel_Click();
    EXPECT_FALSE(forms.find->loaded());
    editor.mnuFind_Click();
    EXPECT_EQ(forms.find->txtFind.text, "");
    found(next, "");  // counts all the same
    EXPECT_EQ(found(next, "h"), "Hallo: MainHall.hall1");
    EXPECT_TRUE(editor.Form_Unload());
    EXPECT_EQ(forms.find, nullptr);
}

}  // namespace
