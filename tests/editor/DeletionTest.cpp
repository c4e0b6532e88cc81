#include "support/EditorWorld.h"

namespace {

class DeletionTest : public ::testing::Test, protected EditorWorld {
 protected:
    void openPlant() {
        const std::string nested = branch("C", tag("y") + tag("z")) + tag("c");
        open("/a", configuration(plc("P", branch("A", tag("x")) + branch("B", nested)) + plc("Q")));
    }
    std::string afterAnswering(Answer answer) {
        desktop.willAnswer({answer});
        editor.mnuDelete_Click();
        EXPECT_EQ(desktop.proposed, Answer::no);
        return told() + state();
    }
};

TEST_F(DeletionTest, TakesTheSelectedRowsOrTheNodeWithAllBelowItAfterAQuestion) {
    const std::string all = "P[A[x] B[C[y z] c]] Q[] ";
    const std::string contents = " and all its items?\n";
    const std::string rows = "the selected items ?\n";
    const std::string odd = " P.B.C P.B.c P.A.X";  // of a branch, of another item, of none
    const std::string invalid = errorIn("mnuDelete_Click", ErrorNumber::invalidCall);
    const std::string notFound = errorIn("mnuDelete_Click", ErrorNumber::elementNotFound);
    const struct {
        std::string key;
        std::set<std::string> chosen;  // rows; without any, the node in the tree is
        std::string question, afterNo, afterYes;
    } cases[] = {{"P", {}, "P" + contents, "P:", "Q[] Q:"},
                 {"P.A", {}, "A" + contents, "P.A: P.A.x", "P[B[C[y z] c]] Q[] P.B: P.A.x"},
                 {"P.B", {}, "B" + contents, "P.B: P.B.c", "P[A[x]] Q[] P.A: P.B.c"},
                 // For an item the list is filled again, after No as well.
                 {"P.B.C.y",
                  {},
                  "y ?\n",
                  "P.B.C.y: P.B.C.y P.B.C.z",
                  "P[A[x] B[C[z] c]] Q[] P.B.C.z: P.B.C.z"},
                 {"P.B.c", {}, "c ?\n", "P.B.c: P.B.c", "P[A[x] B[C[y z]]] Q[] P.B.C:"},
                 // After rows, the contents of the selected node's parent are listed.
                 {"P.B.C",
                  {"z"},
                  rows,
                  "P.B.C: P.B.C.y P.B.C.z" + odd,
                  "P[A[x] B[C[y] c]] Q[] P.B.C: P.B.c"},
                 {"P.A",
                  {"x", "P.B.C", "P.B.c"},
                  rows,
                  "P.A: P.A.x" + odd,
                  invalid + "P[A[] B[C[y z] c]] Q[] P.A: P.A.x" + odd},
                 {"P.A", {"P.A.X"}, rows, "P.A: P.A.x" + odd, notFound + all + "P.A: P.A.x" + odd}};
    for (const auto& [key, chosen, question, afterNo, afterYes] : cases) {
        openPlant();
        click(key);
        for (const char* other : {"P.B.C", "P.B.c", "P.A.X"})
            if (!chosen.empty()) editor.ListView1.addRow({other, other, {}, "", "", false});
        if (!chosen.empty()) selectRows(chosen);
        const std::string asked = "Are you sure you want to delete " + question;
        EXPECT_EQ(afterAnswering(Answer::no), asked + all + afterNo);
        EXPECT_EQ(afterAnswering(Answer::yes), asked + afterYes);
    }
    openPlant();
    click("config");
    editor.mnuDelete_Click();
    click("P");
    editor.activeControl = frmEditing::ActiveControl::none;
    editor.mnuDelete_Click();
    EXPECT_EQ(told() + state(), all + "P:");
}

TEST_F(DeletionTest, LeavesSelectedWhatNodesCanBeAddedBeside) {
    const auto addBranch = [&] {
        forms.whenShown<frmBranch>(&frmBranch::cmdOk_Click);
        editor.mnuAddBranch_Click();
        return state();
    };
    openPlant();
    click("P.B.C.y");
    afterAnswering(Answer::yes);
    EXPECT_EQ(addBranch(), "P[A[x] B[C[z NewBranch4[]] c]] Q[] P.B.C.NewBranch4: P.B.C.z*");
    click("config");
    editor.mnuAddBranch_Click();
    editor.mnuAddItem_Click();
    EXPECT_EQ(told(), errorIn("EH_mnuAddbranch_Click", ErrorNumber::objectNotSet) +
                          errorIn("mnuAddItem_Click", ErrorNumber::objectNotSet));
    selectRow(1);  // of a device
    EXPECT_EQ(addBranch(), "P[A[x] B[C[z NewBranch4[]] c]] Q[NewBranch5[]] Q.NewBranch5: P Q*");
}

}  // namespace
