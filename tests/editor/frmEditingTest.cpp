#include "editor/frmEditing.h"

#include <ctime>

#include "support/EditorWorld.h"

namespace {

class frmEditingTest : public ::testing::Test, protected EditorWorld {};

TEST_F(frmEditingTest, LaysOutToolbarTreeAndListByFixedFractions) {
    editor.Form_Load({1366, 768});
    EXPECT_EQ(editor.referenceSize.width, 1093);  // 80 %, rounded
    EXPECT_EQ(editor.referenceSize.height, 614);
    const auto [toolbar, tree, list] = frmEditing::layoutFor({2000, 1000});
    std::vector<int> numbers;
    for (const auto& part : {toolbar, tree, list})
        numbers.insert(numbers.end(), {part.left, part.top, part.width, part.height});
    EXPECT_EQ(numbers, (std::vector{0, 0, 2000, 40, 0, 50, 800, 950, 820, 50, 1180, 950}));
}

TEST_F(frmEditingTest, AnswersAtOnceWithAllGroupAddressesInOneBranch) {
    std::string full;
    for (int i = 0; i < 65280; ++i)
        full += tag("Item_" + std::to_string(i));
    open("/full.xml", configuration(plc("Plant", branch("A", full))));
    click("Plant.A");
    [[maybe_unused]] const std::clock_t start = std::clock();  // the machine may be busy
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtAddress = {{{"1"}, {"1"}, {"0"}}};
        form.txtNumbItems.text = "256";
        form.cmdOkNumber_Click();
    });
    editor.mnuAddItem_Click();
    EXPECT_EQ(editor.ListView1.rows().size(), 65536U);
    forms.whenShown<frmBranch>([](frmBranch& form) {
        form.txtBranchName.text = "B";
        form.cmdOk_Click();
    });
    editor.TreeView1_DblClick();
    EXPECT_EQ(document.items().last()->sKey, "Plant.B.New_Item_65536");
#ifdef NDEBUG
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
#endif
}

TEST_F(frmEditingTest, CountsPastesIn16Bits) {
    open("/new.xml", configuration(plc("P")));  // nothing is copied, but pastes count, from 1 on
    click("P");
    for (int i = 1; i <= 32767; ++i)
        editor.mnuPaste_Click();
    document.tree().select(nullptr);
    editor.mnuPaste_Click();
    EXPECT_EQ(told(),
              " Error n. 6  Overflow in mnuPaste_Click\nCopied object can not be added here \n");
}

}  // namespace
