#include <gtest/gtest.h>

#include "support/EditorWorld.h"

namespace {

const std::string defaultName =
    "Please change Item name (do not use default name) before copying\n";
const std::string branchRefused = "Please use Drag&Drop to copy and paste branches\n";
const std::string sure = "Are you sure you want to delete the selected items ?\n";
const std::string sureOfBranch = "Are you sure you want to delete UP and all its items?\n";

class CopyPasteTest : public ::testing::Test, protected EditorWorld {
 protected:
    using Names = std::set<std::string>;
    using Command = void (frmEditing::*)();
    static constexpr Command copy = &frmEditing::mnuCopy_Click;
    static constexpr Command cut = &frmEditing::mnuCut_Click;

    CopyPasteTest() { openPlant(); }
    void openPlant() {
        const std::string names = tag("New_Item_1") + tag("new_Item") + tag("Copied_Item");
        const std::string hall = branch("HALL", tag("A") + tag("B") + tag("Lamp"));
        const std::string plant = branch("F", names + tag("Copied_It")) + hall + branch("TO", "");
        open("/house.xml", configuration(plc("P", plant + branch("UP", branch("B", "")))));
    }
    /// For selected rows, among which the device has one, or without any for the node in the tree.
    void run(Command command, const std::string& key, const Names& rows) {
        click(key);
        editor.ListView1.addRow({"P", "P", {}, "", "", false});
        if (!rows.empty()) selectRows(rows);
        (editor.*command)();
    }
    std::string pasted(const std::string& key) {
        click(key);
        editor.mnuPaste_Click();
        expectTreeAndRegistriesAgree(document);
        EXPECT_TRUE(document.saved);
        return contentsOf(document.tree().nodeAt(key));
    }
};

TEST_F(CopyPasteTest, TakesItemsThatHaveANameOfTheirOwn) {
    const std::string invalid = errorIn("mnuCopy_Click", ErrorNumber::invalidCall);
    const struct {
        Command command;
        std::string key;
        Names rows;
        std::string message, target, contents;  // the item Lamp was copied before
        Answer answer = Answer::yes;
    } cases[] = {{copy, "P.F.Copied_Item", {}, "", "P.TO", "Copied_Item"},
                 {copy, "P.F.New_Item_1", {}, defaultName, "P.TO", "Lamp"},
                 {copy, "P.UP", {}, branchRefused, "P.TO", "Lamp"},
                 {copy, "P.F", {"no row"}, "", "P.TO", "Lamp"},
                 {copy, "P.F", {"New_Item_1", "P"}, defaultName, "P.TO", "Lamp"},
                 {copy, "P.F", {"Copied_It", "Copied_Item"}, defaultName, "P.TO", "Copied_It"},
                 {copy, "P.F", {"Copied_It", "new_Item"}, "", "P.TO", "Copied_It new_Item"},
                 {copy, "P.HALL", {"A", "B", "P"}, invalid, "P.TO", "A B"},
                 {cut, "P.HALL", {"B"}, sure, "P.HALL", "A B_0 Lamp"},
                 {cut, "P.HALL", {"B"}, sure, "P.HALL", "A B B_0 Lamp", Answer::no},
                 {cut,
                  "P.F",
                  {"New_Item_1", "Copied_It", "Copied_Item", "new_Item"},
                  defaultName + sure,
                  "P.F",
                  "Copied_It_0"},
                 {cut, "P.UP", {}, branchRefused + sureOfBranch, "P.TO", "Lamp"}};
    for (const auto& [command, key, rows, message, target, contents, answer] : cases) {
        openPlant();
        run(copy, "P.HALL", {"Lamp"});
        if (command == cut) desktop.willAnswer({answer});
        run(command, key, rows);
        EXPECT_EQ(told(), message) << key;
        EXPECT_EQ(pasted(target), contents) << key;
    }
}

TEST_F(CopyPasteTest, CountsCopiesWhereTheirNameIsTaken) {
    const std::tuple<Names, const char*, std::string> story[] = {
        {{"Lamp"}, "P.HALL", "A B Lamp Lamp_0"},
        {{}, "P.HALL", "A B Lamp Lamp_0 Lamp_1"},
        {{}, "P.TO", "Lamp"},
        {{}, "P.TO", "Lamp Lamp_4"},
        {{"Lamp", "Lamp_0"}, "P.HALL", "A B Lamp Lamp_0 Lamp_0_1 Lamp_0_1_2 Lamp_1"},
        {{"A", "B", "Lamp"}, "P.UP", "A B[]"}};  // a branch has the second one's key
    for (const auto& [rows, target, contents] : story) {
        if (!rows.empty()) run(copy, "P.HALL", rows);
        document.items().at("P.HALL.A")->sComment = target;
        EXPECT_EQ(pasted(target), contents);
    }
    EXPECT_EQ(rows(), "A|P.UP|EIS1|1/2/3|READ|0A03\n") << "what the item is when it is pasted";
    EXPECT_EQ(told(), errorIn("mnuPaste_Click", ErrorNumber::keyNotUnique));
}

TEST_F(CopyPasteTest, PastesIntoDevicesAndBranchesOnly) {
    EditorWorld fresh;
    fresh.editor.mnuPaste_Click();
    EXPECT_EQ(fresh.told(), "No items to paste.\n");
    run(copy, "P.HALL.A", {});
    const std::string before = outline(document);
    EXPECT_EQ(pasted("P.HALL.A") + pasted("config") + told(), before);
    document.tree().select(nullptr);
    editor.mnuPaste_Click();
    EXPECT_EQ(told(), "Copied object can not be added here \n");

    openPlant();  // the clipboard is empty now, but each paste counts, from 1 on
    click("P.TO");
    for (int i = 1; i <= 32767; ++i)
        editor.mnuPaste_Click();
    EXPECT_EQ(told(), errorIn("mnuPaste_Click", ErrorNumber::overflow));
}

}  // namespace
