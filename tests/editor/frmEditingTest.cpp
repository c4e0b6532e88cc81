#include "editor/frmEditing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;

const std::string itemColumns =
    "Item Name 0.2, Comment 0.3, Datatype 0.2, Address (Hex) 0.3, Access Rights 0.2";

class frmEditingTest : public ::testing::Test, protected EditorWorld {
 protected:
    void openPlant(const std::string& contents) {
        open("/home/ann/house.xml", configuration(plc("Plant", contents) + plc("Annex")));
    }

    std::string texts() const {
        std::string line;
        for (const auto& row : editor.ListView1.rows())
            line += (line.empty() ? "" : " ") + row.text;
        return line;
    }
};

TEST_F(frmEditingTest, StartsWithoutAConfiguration) {
    EXPECT_EQ(editor.caption, "QUONAutomation - OPCOlvan");
    EXPECT_FALSE(editor.TreeView1.visible || editor.ListView1State.visible);
    EXPECT_FALSE(editor.pnlImpStat.visible);
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::noConfiguration));

    editor.Form_Load({1366, 768});
    EXPECT_EQ(editor.referenceSize.width, 1093);  // 80 %, rounded
    EXPECT_EQ(editor.referenceSize.height, 614);
}

TEST_F(frmEditingTest, LaysOutToolbarTreeAndListByFixedFractions) {
    const auto [toolbar, tree, list] = frmEditing::layoutFor({2000, 1000});
    EXPECT_EQ(toolbar.height, 40);
    EXPECT_EQ(tree.width, 800);
    EXPECT_EQ(tree.top, 50);
    EXPECT_EQ(tree.height, 950);
    EXPECT_EQ(list.left, 820);
    EXPECT_EQ(list.width, 1180);
    EXPECT_EQ(list.top, 50);
    EXPECT_EQ(list.height, 950);
}

TEST_F(frmEditingTest, ListsTheDevicesOfTheRootInTheOrderOfTheFile) {
    openPlant("");
    editor.mnuIcon_Click();
    click("config");
    EXPECT_EQ(columns(), "Plc Name 0.5, Port 0.2, EDI Type 0.3");
    EXPECT_EQ(rows(), "Plant|COM2|PEI10x19200\nAnnex|COM2|PEI10x19200\n");
    EXPECT_EQ(outline(document), "Annex[] Plant[]") << "the tree is sorted, the list is not";
    EXPECT_EQ(editor.ListView1.rows()[0].key, "Plant");
    EXPECT_EQ(editor.ListView1.rows()[0].icon + editor.ListView1.rows()[0].smallIcon, "plcplc");
    EXPECT_EQ(editor.ListView1.view(), ListView::View::report);
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::rootSelected));

    editor.mnuNewCfg_Click();
    click("config");
    EXPECT_EQ(columns(), "Plc Name 0.5, Port 0.2, EDI Type 0.3");
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(desktop.pointer, Pointer::normal);
}

TEST_F(frmEditingTest, ListsTheItemsOfAContainerInAlphabeticalOrderWithTheirIndex) {
    std::string last = tag("Ötest");
    last.replace(last.find("1/2/3"), 5, "31/7/255").replace(last.find("EIS1"), 4, "EIS5");
    openPlant(branch("ROOM", tag("b") + last + tag("C") + tag("a")));
    editor.mnuList_Click();
    click("Plant.ROOM");
    EXPECT_EQ(columns(), itemColumns + ", Index 0.3");
    EXPECT_EQ(rows(),
              "a||EIS1|1/2/3|READ|0A03\nb||EIS1|1/2/3|READ|0A03\nC||EIS1|1/2/3|READ|0A03\n"
              "Ötest||EIS5|31/7/255|READ|FFFF\n");
    EXPECT_EQ(editor.ListView1.rows()[3].key, "Plant.ROOM.Ötest");
    EXPECT_EQ(editor.ListView1.rows()[3].icon, "EIS5");
    EXPECT_EQ(editor.ListView1.rows()[3].smallIcon, "item");
    EXPECT_EQ(editor.ListView1.view(), ListView::View::report);
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::containerSelectedItemsListed));

    // What was sorted is saved so.
    desktop.willAnswer({Answer::yes});
    editor.mnuSaveCfg_Click();
    const std::string& saved = disk.files["/home/ann/house.xml"];
    EXPECT_LT(saved.find("<name>a<"), saved.find("<name>b<"));
    EXPECT_LT(saved.find("<name>b<"), saved.find("<name>C<"));
}

TEST_F(frmEditingTest, ListsASingleItemWithoutItsIndex) {
    openPlant(tag("Light"));
    editor.mnuSmallIcon_Click();
    click("Plant.Light");
    EXPECT_EQ(columns(), itemColumns);
    EXPECT_EQ(rows(), "Light||EIS1|1/2/3|READ\n");
    EXPECT_EQ(editor.ListView1.rows()[0].subItems[4], "");
    EXPECT_EQ(editor.ListView1.view(), ListView::View::report);
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::itemSelected));
}

TEST_F(frmEditingTest, LetsNamesBePastedOnlyWhenTheFirstChildIsAnItem) {
    const struct {
        std::string contents;
        const char* listed;
        const CommandState& state;
    } cases[] = {
        {"", "", commandStates::containerSelected},
        {branch("A", tag("x")), "", commandStates::containerSelected},
        {tag("z") + branch("A", ""), "z", commandStates::containerSelected},
        {branch("Z", "") + tag("a"), "a", commandStates::containerSelectedItemsListed},
    };
    for (const auto& [contents, listed, state] : cases) {
        openPlant(contents);
        click("config");
        click("Plant");
        EXPECT_EQ(columns(), itemColumns + ", Index 0.3");
        EXPECT_EQ(texts(), listed);
        EXPECT_EQ(enabledNow(), enabledIn(state)) << contents;
    }
}

TEST_F(frmEditingTest, EnablesByTheKindOfTheClickedRow) {
    openPlant(branch("F", "") + tag("x"));
    click("config");
    editor.ListView1_Click();
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::rootSelected)) << "no row is selected";
    selectRow(0);
    editor.ListView1_Click();
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::deviceRowSelected));

    click("Plant");
    selectRow(0);
    editor.ListView1_Click();
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::itemRowSelected));

    editor.ListView1.addRow({"Plant.F", "F", {}, "", "", false});
    selectRow(1);
    editor.ListView1_Click();
    EXPECT_EQ(enabledNow(), enabledIn(commandStates::branchRowSelected));

    editor.ListView1.addRow({"Plant.gone", "gone", {}, "", "", false});
    selectRow(2);
    editor.ListView1_Click();
    editor.ListView1_DblClick();
    EXPECT_THAT(desktop.messages(),
                ElementsAre(" Error n. 35601  Element not found in ListView1_Click",
                            " Error n. 35601  Element not found in ListView1_DblClick"));
}

TEST_F(frmEditingTest, SelectsTheNodeOfADoubleClickedRowAndKeepsTheList) {
    openPlant(tag("x") + tag("y"));
    click("Plant");
    editor.ListView1_DblClick();
    EXPECT_EQ(document.tree().selected()->key(), "Plant") << "no row is selected";
    selectRow(1);
    forms.whenShown<frmItems>([](frmItems& form) { form.cmdCancel_Click(); });
    editor.ListView1_DblClick();
    EXPECT_EQ(document.tree().selected()->key(), "Plant.y");
    EXPECT_EQ(texts(), "x y");
}

TEST_F(frmEditingTest, SortsByAColumnAlwaysAscending) {
    const auto withComment = [](const std::string& name, const std::string& comment) {
        std::string item = tag(name);
        return item.insert(item.find("</comment>"), comment);
    };
    openPlant(withComment("a", "lamp") + withComment("b", "Door") + withComment("c", "äther"));
    click("Plant");
    for (int clicks = 0; clicks < 2; ++clicks) {
        editor.ListView1_ColumnClick(1);
        EXPECT_EQ(texts(), "c b a");
    }
    EXPECT_EQ(outline(document), "Plant[a b c] Annex[]") << "the tree keeps its own order";
    editor.ListView1_ColumnClick(0);
    EXPECT_EQ(texts(), "a b c");
}

TEST_F(frmEditingTest, ReportsAMissingRecordAndGoesOn) {
    openPlant(tag("x") + tag("y"));
    document.items().remove("Plant.y");
    for (const char* node : {"Plant", "Plant.y"}) {
        desktop.forgetMessages();
        click(node);
        EXPECT_THAT(desktop.messages(), ElementsAre(" Error n. 5  Invalid procedure call or "
                                                    "argument in TreeView1_NodeClick"));
        EXPECT_EQ(desktop.pointer, Pointer::normal);
    }
    const int timesBusy = desktop.timesBusy;
    click("Plant.x");
    EXPECT_EQ(texts(), "x");
    EXPECT_EQ(desktop.timesBusy, timesBusy + 1);
}

}  // namespace
