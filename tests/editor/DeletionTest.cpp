#include <gtest/gtest.h>

#include "support/EditorWorld.h"

namespace {

const std::string sure = "Are you sure you want to delete ";
const std::string sureOfRows = sure + "the selected items ?\n";

class DeletionTest : public ::testing::Test, protected EditorWorld {
 protected:
    DeletionTest() { openPlant(); }
    void openPlant() {
        const std::string nested = branch("C", tag("y") + tag("z")) + tag("w");
        const std::string plant = branch("A", tag("x")) + branch("B", nested) + tag("v");
        open("/house.xml", configuration(plc("P", plant) + plc("Q")));
    }
    /// What is left; then what is selected and listed.
    std::string afterAnswering(Answer answer, const std::string& messages) {
        desktop.willAnswer({answer});
        editor.mnuDelete_Click();
        EXPECT_EQ(told(), messages);
        expectTreeAndRegistriesAgree(document);
        EXPECT_TRUE(document.saved);
        return outline(document) + " " + shown();
    }
};

TEST_F(DeletionTest, TakesTheSelectedNodeWithAllBelowItAfterAQuestion) {
    const std::string all = "P[A[x] B[C[y z] w] v] Q[] ";
    const std::string contents = " and all its items?\n";
    // For an item the list is filled again, after No as well.
    const std::array<std::string, 4> cases[] = {
        {"P", "P" + contents, "P: P.v", "Q[] Q: P.v"},
        {"P.A", "A" + contents, "P.A: P.A.x", "P[B[C[y z] w] v] Q[] P.B: P.A.x"},
        {"P.B", "B" + contents, "P.B: P.B.w", "P[A[x] v] Q[] P.v: P.B.w"},
        {"P.B.C.y", "y ?\n", "P.B.C.y: P.B.C.y P.B.C.z",
         "P[A[x] B[C[z] w] v] Q[] P.B.C.z: P.B.C.z"},
        {"P.B.w", "w ?\n", "P.B.w: P.B.w", "P[A[x] B[C[y z]] v] Q[] P.B.C:"},
        {"P.A.x", "x ?\n", "P.A.x: P.A.x", "P[A[] B[C[y z] w] v] Q[] P.A: P.v"}};
    for (const auto& [key, question, afterNo, afterYes] : cases) {
        openPlant();
        click(key);
        EXPECT_EQ(afterAnswering(Answer::no, sure + question), all + afterNo);
        EXPECT_EQ(afterAnswering(Answer::yes, sure + question), afterYes);
    }
    openPlant();
    click("config");
    editor.mnuDelete_Click();
    click("P.A");
    editor.activeControl = frmEditing::ActiveControl::none;
    editor.mnuDelete_Click();
    EXPECT_EQ(told() + outline(document) + " ", all);
}

TEST_F(DeletionTest, TakesTheSelectedRowsAndListsTheParentOfTheSelectedNode) {
    click("P.B.C");
    selectRows({"z"});
    EXPECT_EQ(afterAnswering(Answer::no, sureOfRows),
              "P[A[x] B[C[y z] w] v] Q[] P.B.C: P.B.C.y P.B.C.z");
    EXPECT_EQ(afterAnswering(Answer::yes, sureOfRows), "P[A[x] B[C[y] w] v] Q[] P.B.C: P.B.w");
    editor.ListView1.addRow({"P.B", "B", {}, "", "", false});
    editor.ListView1.addRow({"P.v", "v", {}, "", "", false});
    selectRows({"w", "B", "v"});
    const std::string invalid = errorIn("mnuDelete_Click", ErrorNumber::invalidCall);
    EXPECT_EQ(afterAnswering(Answer::yes, sureOfRows + invalid),
              "P[A[x] B[C[y]] v] Q[] P.B.C: P.B.w P.B P.v");
}

TEST_F(DeletionTest, LeavesSelectedWhatNodesCanBeAddedBeside) {
    const auto addBranch = [&] {
        forms.whenShown<frmBranch>([](frmBranch& form) {
            form.txtBranchName.text = "NEW";
            form.cmdOk_Click();
        });
        editor.mnuAddBranch_Click();
        expectTreeAndRegistriesAgree(document);
    };
    click("P.B.C.y");
    afterAnswering(Answer::yes, sure + "y ?\n");
    addBranch();  // an item is selected now
    EXPECT_EQ(outline(document) + shown(), "P[A[x] B[C[z NEW[]] w] v] Q[]P.B.C.NEW: P.B.C.z");
    click("config");
    editor.mnuAddBranch_Click();
    editor.mnuAddItem_Click();
    EXPECT_EQ(told(), errorIn("EH_mnuAddbranch_Click", ErrorNumber::objectNotSet) +
                          errorIn("mnuAddItem_Click", ErrorNumber::objectNotSet));
    selectRow(1);  // the row of a device, with the root selected
    addBranch();
    EXPECT_EQ(outline(document) + shown(), "P[A[x] B[C[z NEW[]] w] v] Q[NEW[]]Q.NEW: P Q");
}

}  // namespace
