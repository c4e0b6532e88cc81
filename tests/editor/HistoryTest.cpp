// Steps of undoing as a user meets them: their names, what is shown afterwards, what is saved.
#include "support/EditorWorld.h"

namespace {

class HistoryTest : public ::testing::Test, protected EditorWorld {
 protected:
    HistoryTest() { open("/a.xml", configuration(plc("P", house) + plc("Q"))); }

    void willType(const std::string& name) {
        forms.whenShown<frmItems>([name](frmItems& form) {
            form.txtItemName.text = name;
            form.txtAddress = {{{"1"}, {"2"}, {"3"}}};
            form.cmdOk_Click();
        });
        forms.whenShown<frmBranch>([name](frmBranch& form) {
            form.txtBranchName.text = name;
            form.cmdOk_Click();
        });
    }
    std::string rowKeys() const {
        std::string keys;
        for (const auto& row : editor.ListView1.rows())
            keys += row.key + " ";
        return keys;
    }

    const std::string house =
        tag("OG") + tag("OG.Lamp") + tag("EG.Lamp") + branch("HALL", tag("x"));
};

TEST_F(HistoryTest, NamesEachStepAndSelectsAndListsWhatItIsAbout) {
    forms.whenShown<frmPLC>(&frmPLC::cmdApply_Click);
    forms.whenShown<frmReplace>(&frmReplace::Command2_Click);
    forms.whenShown<frmSetts>([](frmSetts& form) {
        form.cmbPort.text = "USB";
        form.cmdApply_Click();
    });
    const auto done = [&](const std::string& what) {
        EXPECT_EQ(document.undoName(), what);
        EXPECT_EQ(document.redoName(), "");
    };
    click("P.HALL");
    willType("y");
    editor.mnuAddItem_Click();
    done("Add of item y");
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtAddress = {{{"1"}, {"2"}, {"3"}}};
        form.txtNumbItems.text = "3";
        form.cmdOkNumber_Click();
    });
    editor.mnuAddItem_Click();
    done("Add of 3 items");
    willType("z");
    click("P.HALL.y");
    editor.TreeView1_DblClick();
    done("Change of item z");
    click("P.HALL");
    willType("ROOM");
    editor.TreeView1_DblClick();
    done("Rename of branch ROOM");
    click("P.ROOM");
    selectRows({"x", "z"});
    desktop.clipboard = "a\r\nb\r\n";
    editor.mnuPasteName_Click();
    done("Paste of 2 names");
    desktop.clipboard = "c\r\nd\r\n";
    editor.mnuPasteComment_Click();
    done("Paste of 2 comments");
    selectRows({"a", "b"});
    desktop.willAnswer({Answer::yes});
    editor.mnuCut_Click();
    done("Cut of 2 items");
    EXPECT_EQ(outline(document).substr(0, 30), "P[EG.Lamp OG OG.Lamp ROOM[New ");
    click("Q");
    editor.mnuPaste_Click();
    done("Paste of 2 items");
    drag("P.ROOM", "Q");
    done("Move of branch ROOM");
    drag("Q.a", "P", TreeDrag::ctrlMask);
    done("Copy of item a");
    drag("P", "Q");
    done("Move of device P");
    editor.mnuSetts_Click();
    done("Change of global settings");
    EXPECT_EQ(document.settings().port, "USB");

    const auto undone = [&](const std::string& selected, const std::string& rows) {
        editor.mnuUndo_Click();
        const Node* node = document.tree().selected();
        EXPECT_EQ(node->key(), selected) << document.redoName();
        EXPECT_EQ(rowKeys(), rows) << document.redoName();
        for (const Node* above = node->parent(); above != nullptr; above = above->parent())
            EXPECT_TRUE(above->expanded());
        expectTreeAndRegistriesAgree(document);
    };
    click("Q");
    undone("Q", rowKeys());  // settings are no node's
    EXPECT_EQ(document.settings().port, "COM1");
    undone("P", "P.EG.Lamp P.OG P.OG.Lamp P.a ");
    undone("P", "P.EG.Lamp P.OG P.OG.Lamp ");
    undone("P.ROOM", "P.ROOM.New Item 6 P.ROOM.New_Item_7 P.ROOM.New_Item_8 ");
    undone("Q", "");
    undone("P.ROOM", "P.ROOM.New Item 6 P.ROOM.New_Item_7 P.ROOM.New_Item_8 P.ROOM.a P.ROOM.b ");
    undone("P.ROOM", rowKeys());
    undone("P.ROOM", "P.ROOM.New Item 6 P.ROOM.New_Item_7 P.ROOM.New_Item_8 P.ROOM.x P.ROOM.z ");
    undone("P.HALL", "P.HALL.New Item 6 P.HALL.New_Item_7 P.HALL.New_Item_8 P.HALL.x P.HALL.z ");
    undone("P.HALL.y", "P.HALL.y ");
    undone("P.HALL", "P.HALL.x P.HALL.y ");
    EXPECT_FALSE(document.saved);
    undone("P.HALL", "P.HALL.x ");
    EXPECT_EQ(document.undoName(), "");
    EXPECT_TRUE(document.saved) << "it is as it was opened";
    while (!document.redoName().empty())
        editor.mnuRedo_Click();
    EXPECT_EQ(document.settings().port, "USB");
    EXPECT_EQ(desktop.messages(),
              std::vector<std::string>{"Are you sure you want to delete the selected items ?"});
}

TEST_F(HistoryTest, UndoneStepsAreUnsavedOnceTheConfigurationWasSaved) {
    click("P.HALL");
    willType("y");
    editor.mnuAddItem_Click();
    desktop.willAnswer({Answer::yes});
    editor.mnuSaveCfg_Click();
    EXPECT_TRUE(document.saved);
    editor.mnuUndo_Click();
    EXPECT_FALSE(document.saved) << "the file has the item";
    editor.mnuRedo_Click();
    EXPECT_FALSE(document.saved);
    // Deliberate: a deletion leaves the saved state as it is; what restores it does so too.
    desktop.willAnswer({Answer::yes});
    editor.mnuSaveCfg_Click();
    click("P.HALL.y");
    desktop.willAnswer({Answer::yes});
    editor.mnuDelete_Click();
    EXPECT_TRUE(document.saved);
    editor.mnuUndo_Click();
    EXPECT_TRUE(document.saved);
    desktop.willAnswer({Answer::no});
    willType("w");
    click("P.HALL");
    editor.mnuAddItem_Click();
    EXPECT_EQ(document.redoName(), "") << "a new step ends what could be made again";
    editor.mnuNewCfg_Click();
    EXPECT_EQ(document.undoName() + document.redoName(), "");
    editor.mnuUndo_Click();
    editor.mnuRedo_Click();
    EXPECT_EQ(outline(document), "");
}

TEST_F(HistoryTest, KeepsTheLastStepsUpToALimitAndAlwaysTheLastOne) {
    std::string many;
    for (int i = 0; i < 30'000; ++i)
        many += tag("Light" + std::to_string(i));
    open("/b.xml", configuration(plc("P", branch("A", many) + branch("B", "")) + plc("Q")));
    const auto before = outline(document);
    for (const char* target : {"P.B", "P", "Q", "P"})  // each step takes some 15 MiB
        for (const char* from : {"P.A", "P.B.A", "P.A", "Q.A"})
            if (document.tree().FindNode(from) != nullptr &&
                document.tree().nodeAt(from).parent() != &document.tree().nodeAt(target)) {
                drag(from, target);
                break;
            }
    for (int i = 0; i < 6; ++i)
        drag(i % 2 == 0 ? "P.A" : "Q.A", i % 2 == 0 ? "Q" : "P");
    EXPECT_LE(document.historyBytes(), History::mostBytes);
    int steps = 0;
    for (; !document.undoName().empty(); ++steps)
        editor.mnuUndo_Click();
    EXPECT_TRUE(steps >= 2 && steps < 10) << steps;
    for (; !document.redoName().empty(); --steps)
        editor.mnuRedo_Click();
    EXPECT_EQ(steps, 0);
    expectTreeAndRegistriesAgree(document);
    desktop.willAnswer({Answer::yes});
    click("P");
    editor.mnuDelete_Click();
    EXPECT_EQ(outline(document), "Q[]");
    editor.mnuUndo_Click();
    EXPECT_EQ(outline(document).size(), before.size());
    expectTreeAndRegistriesAgree(document);
}

}  // namespace
