#include <gtest/gtest.h>

#include "support/EditorWorld.h"

namespace {

const std::string unable = "Unable to drag nodes here\n";
const std::string nameInUse = "Name already in use at this level. Move not allowed\n";

class TreeDragTest : public ::testing::Test, protected EditorWorld {
 protected:
    TreeDragTest() {
        const std::string nested = tag("I1") + tag("I2") + branch("C", tag("I3"));
        const std::string plant = branch("B", nested) + branch("D", tag("X")) + tag("x");
        open("/house.xml", configuration(plc("P", plant) + plc("Q", tag("I3"))));
    }
    /// The outline of what the file holds.
    std::string saved() {
        desktop.willAnswer({Answer::yes});
        editor.mnuSaveCfg_Click();
        EditorWorld reader;
        reader.open("/house.xml", disk.files["/house.xml"]);
        EXPECT_EQ(reader.told(), "");
        return outline(reader.document);
    }
    static constexpr const char* all = "P[B[I1 I2 C[I3]] D[X] x] Q[I3]";
};

TEST_F(TreeDragTest, MovesABranchWithItsContentsAndRecords) {
    const auto item = document.items().at("P.B.C.I3");
    click("P.B.C.I3");
    drag("P.B", "P.D");
    EXPECT_EQ(outline(document), "P[D[X B[I1 I2 C[I3]]] x] Q[I3]");
    expectTreeAndRegistriesAgree(document);
    EXPECT_EQ(document.items().find("P.D.B.C.I3"), item);
    EXPECT_EQ(item->sKey + document.branches().at("P.D.B.C")->sKey, "P.D.B.C.I3P.D.B.C");
    EXPECT_TRUE(document.tree().nodeAt("P.D.B").expanded());
    EXPECT_EQ(shown() + told(), "P.D: P.B.C.I3") << "the list is not filled again";
    EXPECT_TRUE(document.saved && editor.treeDrag().dropHighlight() == nullptr);
    EXPECT_EQ(desktop.pointer, Pointer::normal);
}

TEST_F(TreeDragTest, CopiesShareARecordThoughEachHasAName) {
    for (const char* key : {"P.B", "P.x"})
        drag(key, "Q", TreeDrag::ctrlMask);
    EXPECT_EQ(outline(document), "P[B[I1 I2 C[I3]] D[X] x] Q[I3 B[I1 I2 C[I3]] x]");
    for (const std::string path : {".x", ".B.C.I3"}) {
        EXPECT_EQ(document.items().at("P" + path), document.items().at("Q" + path));
        EXPECT_EQ(document.items().at("P" + path)->sKey, "Q" + path);
    }
    EXPECT_EQ(document.branches().find("P.B.C"), document.branches().find("Q.B.C"));
    expectTreeAndRegistriesAgree(document);
    click("Q.x");
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtItemName.text = "y";
        form.cmdOk_Click();
    });
    editor.TreeView1_DblClick();
    for (const auto& [container, listed] : {std::pair("P", "x|"), {"Q", "I3|"}}) {
        click(container);
        EXPECT_EQ(rows().find(listed), 0U) << rows();
    }
    EXPECT_EQ(shown(), "Q: Q.I3 Q.y");
    EXPECT_EQ(saved(), "P[B[I1 I2 C[I3]] D[X] x] Q[B[I1 I2 C[I3]] I3 y]");
}

TEST_F(TreeDragTest, ChangesNothingWhereThereIsNoPlace) {
    const auto dotted = std::make_shared<clsItem>();
    dotted->sKey = "Q." + (dotted->sName = "D.X");
    document.enter(dotted, "Q");
    const std::string before = outline(document);
    const struct {
        std::string from, to, message;
        MessageIcon icon = MessageIcon::none;
    } cases[] = {{"P.B", "P.B.C", unable, MessageIcon::exclamation},
                 {"P.B", "P.B", unable, MessageIcon::exclamation},
                 {"Q.I3", "P.x", unable, MessageIcon::exclamation},
                 {"P.B.C.I3", "Q", nameInUse, MessageIcon::stop},
                 {"P.x", "P", ""},
                 {"P.x", "", ""},
                 {"config", "Q", ""},
                 {"P.x", "P.D", ""},  // there is X; records do not differ by letter case
                 {"P.D", "Q", errorIn("CopySubTree", ErrorNumber::keyTaken)}};
    for (const auto& [from, to, message, icon] : cases)
        for (const int shift : {0, TreeDrag::ctrlMask}) {
            desktop.lastIcon = MessageIcon::none;
            drag(from, to, shift);
            EXPECT_EQ(told(), message) << from;
            EXPECT_EQ(desktop.lastIcon, icon) << from;
            EXPECT_EQ(outline(document), before) << from;
            expectTreeAndRegistriesAgree(document);
        }
    EXPECT_EQ(document.items().at("P.x")->sKey, "P.x");
}

TEST_F(TreeDragTest, OfADeviceTakesTheNodeOnlyAndASaveKeepsTheContents) {
    drag("P", "Q");
    EXPECT_EQ(outline(document), "Q[I3 P[]]");
    EXPECT_EQ(document.devices().find("Q.P"), nullptr);
    EXPECT_EQ(saved(), "P[B[C[I3] I1 I2] D[X] x] Q[I3 P[]]");
}

TEST_F(TreeDragTest, CopiesWhenCtrlWasHeldAsTheRightButtonWentDown) {
    TreeDrag& drag = editor.treeDrag();
    const Node& item = document.tree().nodeAt("P.x");
    for (const int shift : {0, 1, 2, 3, 4, 5, 6, 7}) {
        EXPECT_TRUE(drag.TreeView1_MouseDown(2, shift, &item));
        EXPECT_FALSE(drag.TreeView1_MouseDown(1, 7 - shift, &item));
        const bool copies = shift == 2 || shift == 3 || shift >= 6;
        EXPECT_EQ(drag.TreeView1_OLEStartDrag(), copies ? DropEffect::copy : DropEffect::move);
        EXPECT_EQ(drag.data(), "P.x");
        drag.TreeView1_OLEGiveFeedback();
        drag.TreeView1_OLEDragOver(&document.tree().nodeAt("Q"));
        EXPECT_EQ(drag.dropHighlight()->key(), "Q");
        drag.cancelled();
        EXPECT_EQ(drag.dropHighlight(), nullptr);
        EXPECT_EQ(desktop.pointer, Pointer::normal);
    }
    EXPECT_FALSE(drag.TreeView1_MouseDown(2, 0, nullptr));
    EXPECT_EQ(outline(document), all);
}

}  // namespace
