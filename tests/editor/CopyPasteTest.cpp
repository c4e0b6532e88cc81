#include "support/EditorWorld.h"

namespace {

constexpr auto none = &frmEditing::mnuList_Click;
constexpr auto copy = &frmEditing::mnuCopy_Click;
constexpr auto cut = &frmEditing::mnuCut_Click;

const std::string defaultName =
    "Please change Item name (do not use default name) before copying\n";
const std::string branchRefused = "Please use Drag&Drop to copy and paste branches\n";
const std::string sure = "Are you sure you want to delete the selected items ?\n";
const std::string sureOfTO = "Are you sure you want to delete TO and all its items?\n";
const std::string invalid = errorIn("mnuCopy_Click", ErrorNumber::invalidCall);
const std::string taken = errorIn("mnuPaste_Click", ErrorNumber::keyNotUnique);

class CopyPasteTest : public ::testing::Test, protected EditorWorld {
 protected:
    CopyPasteTest() {
        const std::string names = tag("New_Item_1") + tag("new_Item") + tag("Copied_Item");
        const std::string hall = branch("HALL", tag("A") + tag("B") + tag("Lamp"));
        const std::string plant = branch("F", names + tag("Copied_It")) + hall + branch("TO", "");
        open("/house.xml", configuration(plc("P", plant + branch("UP", branch("B", "")))));
    }
    /// What a paste adds there.
    std::string pasted(const std::string& key) {
        click(key);
        const Node& target = *document.tree().selected();
        const std::set<const Node*> before(target.children().begin(), target.children().end());
        editor.mnuPaste_Click();
        EXPECT_NE(state().back(), '*');
        std::string added;
        for (const Node* child : target.children())
            if (!before.contains(child)) added += child->text() + " ";
        return added;
    }
};

TEST_F(CopyPasteTest, CopiesAndCutsItemsWithANameOfTheirOwn) {
    const struct {
        void (frmEditing::*command)();
        std::string from;
        std::set<std::string> rows;  // in the list, where the device has one; else in the tree
        std::string messages, to, added;
    } story[] = {{copy, "P.HALL", {"Lamp"}, "", "P.HALL", "Lamp_0 "},
                 {none, "P.HALL", {}, "", "P.HALL", "Lamp_1 "},
                 {none, "P.HALL", {}, "", "P.TO", "Lamp "},
                 {none, "P.HALL", {}, "", "P.TO", "Lamp_4 "},
                 {copy, "P.HALL", {"Lamp", "Lamp_0"}, "", "P.HALL", "Lamp_0_1 Lamp_0_1_2 "},
                 {copy, "P.F.New_Item_1", {}, defaultName, "P.UP", "Lamp Lamp_0 "},
                 {copy, "P.TO", {}, branchRefused, "P.UP.B", "Lamp Lamp_0 "},
                 {copy, "P.F", {"no row"}, "", "P.F", "Lamp Lamp_0 "},
                 {copy, "P.F", {"New_Item_1", "P"}, defaultName, "P", "Lamp Lamp_0 "},
                 {copy, "P.F", {"Copied_It", "Copied_Item"}, defaultName, "P", "Copied_It "},
                 {copy, "P.F", {"Copied_It", "new_Item"}, "", "P.TO", "Copied_It new_Item "},
                 {copy, "P.HALL", {"A", "P"}, invalid, "P.TO", "A "},
                 {copy, "P.F.Copied_Item", {}, "", "P.TO", "Copied_Item "},
                 {copy, "P.HALL", {"A", "B", "Lamp"}, taken, "P.UP", "A "},  // by the branch B
                 {cut, "P.HALL", {"A"}, sure, "P.HALL", "A_0 "},
                 {cut, "P.HALL", {"B"}, sure, "P.HALL", "B_0 "},  // the answer is No
                 {cut, "P.F", {"New_Item_1"}, defaultName + sure, "P.HALL", "B_0_1 "},
                 {cut, "P.TO", {}, branchRefused + sureOfTO, "P.F", "B "}};
    desktop.willAnswer({Answer::yes, Answer::no, Answer::yes, Answer::no});
    for (const auto& [command, from, rows, messages, to, added] : story) {
        click(from);
        editor.ListView1.addRow({"P", "P", {}, "", "", false});
        if (!rows.empty()) selectRows(rows);
        (editor.*command)();
        EXPECT_EQ(pasted(to), added) << from;
        EXPECT_EQ(told(), messages) << from;
    }
    EXPECT_EQ(contentsOf(document.tree().nodeAt("P.HALL")),
              "A_0 B B_0 B_0_1 Lamp Lamp_0 Lamp_0_1 Lamp_0_1_2 Lamp_1");
    EXPECT_EQ(document.items().find("P.F.New_Item_1"), nullptr);
}

TEST_F(CopyPasteTest, PastesWhatTheItemIsNowIntoDevicesAndBranches) {
    EditorWorld fresh;
    fresh.editor.mnuPaste_Click();
    EXPECT_EQ(fresh.told(), "No items to paste.\n");
    click("P.HALL.A");
    editor.mnuCopy_Click();
    document.items().at("P.HALL.A")->sComment = "new";
    for (const auto& [key, added] : {std::pair("P.HALL.A", ""), {"config", ""}, {"P.TO", "A "}})
        EXPECT_EQ(pasted(key), added);
    EXPECT_EQ(rows(), "A|new|EIS1|1/2/3|READ|0A03\n");
    document.tree().select(nullptr);
    editor.mnuPaste_Click();
    EXPECT_EQ(told(), "Copied object can not be added here \n");
    open("/new.xml", configuration(plc("P")));  // nothing is copied, but pastes count, from 1 on
    click("P");
    for (int i = 1; i <= 32767; ++i)
        editor.mnuPaste_Click();
    EXPECT_EQ(told(), errorIn("mnuPaste_Click", ErrorNumber::overflow));
}

}  // namespace
