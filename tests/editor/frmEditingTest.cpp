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
    const auto numbers = [](const auto& part) {
        return std::vector{part.left, part.top, part.width, part.height};
    };
    EXPECT_EQ(numbers(toolbar), (std::vector{0, 0, 2000, 40}));
    EXPECT_EQ(numbers(tree), (std::vector{0, 50, 800, 950}));
    EXPECT_EQ(numbers(list), (std::vector{820, 50, 1180, 950}));
}

TEST_F(frmEditingTest, AnswersAtOnceWithAllGroupAddressesInOneBranch) {
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
    [[maybe_unused]] const std::clock_t start = std::clock();  // the machine may be busy
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtAddress = {{{"1"}, {"1"}, {"0"}}};
        form.cmdGroup_Click();
        form.txtNumbItems.text = "256";
        form.cmdOkNumber_Click();
    });
    editor.mnuAddItem_Click();
    EXPECT_EQ(listener.resets, 1);
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
    EXPECT_EQ(told(), errorIn("mnuPaste_Click", ErrorNumber::overflow));
    EditorWorld fresh;
    fresh.editor.mnuPaste_Click();
    EXPECT_EQ(fresh.told(), "No items to paste.\n");
    document.tree().select(nullptr);
    editor.mnuPaste_Click();
    EXPECT_EQ(told(), "Copied object can not be added here \n");
}

TEST_F(frmEditingTest, ShowsInPlaceWhatADialogChanged) {
    open("/new.xml", configuration(plc("Plant", branch("F", branch("G", tag("y") + tag("z"))) +
                                                    branch("F2", tag("w")))));
    click("Plant.F.G");
    const auto rename = [&](const char* key, const char* name) {
        forms.whenShown<frmBranch>([&](frmBranch& form) {
            form.txtBranchName.text = name;
            form.cmdOk_Click();
        });
        document.tree().select(&document.tree().nodeAt(key));
        editor.TreeView1_DblClick();
    };
    rename("Plant.F", "HALL");
    rename("Plant.F2", "F");
    EXPECT_EQ(shown(), "Plant.F: Plant.HALL.G.y Plant.HALL.G.z");

    editor.ListView1_ColumnClick(0);
    selectRow(0);
    editor.ListView1_Click();
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtItemName.text = "zz";
        form.txtComment.text = "last";
        form.txtAddress[0].text = "31";
        form.cmdOk_Click();
    });
    editor.ListView1_DblClick();
    EXPECT_EQ(rows(), "z||EIS1|1/2/3|READ|0A03\nzz|last|EIS1|31/2/3|READ|FA03\n");
    EXPECT_EQ(shown(), "Plant.HALL.G.zz: Plant.HALL.G.z Plant.HALL.G.zz");
    EXPECT_EQ(editor.ListView1.selectedRow()->text, "zz");
    editor.ListView1_Click();
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::itemRowSelected));
    EXPECT_EQ(told(), "");
}

TEST_F(frmEditingTest, OpensANodeForItsFirstItemOnly) {
    open("/new.xml", configuration(plc("Plant")));
    click("Plant");
    for (const bool first : {true, false}) {
        forms.whenShown<frmItems>([&](frmItems& form) {
            for (TextBox& part : form.txtAddress)
                part.text = "1";
            form.cmdOk_Click();
        });
        editor.mnuAddItem_Click();
        Node& node = document.tree().nodeAt("Plant");
        EXPECT_EQ(node.expanded(), first);
        document.tree().setExpanded(node, false);
    }
}

TEST_F(frmEditingTest, OpensOrImportsADroppedFileAsIfItHadBeenChosen) {
    disk.files["/a.XML"] = configuration(plc("Roof"));
    disk.files["/b.esf"] = "Export\r\nMain.Hall.1/1/1\tLamp\tEIS 1\tx\r\n";
    EXPECT_FALSE(editor.acceptsFile("/a.txt") || editor.acceptsFile("") ||
                 editor.acceptsFile("xml"));
    editor.dropFile("/a.XML");
    EXPECT_EQ(outline(document), "Roof[]");
    editor.ListView1_ColumnClick(1);
    change();
    desktop.willAnswer({Answer::no});
    editor.dropFile("/b.esf");
    EXPECT_EQ(told(), "Do you want to save active configuration?\n");
    EXPECT_EQ(outline(document), "Hall[Lamp]");
    EXPECT_EQ(editor.ListView1.sortColumn(), std::nullopt) << "of a new configuration";
    editor.loadingStarted();
    EXPECT_FALSE(editor.acceptsFile("/a.XML"));
}

}  // namespace
