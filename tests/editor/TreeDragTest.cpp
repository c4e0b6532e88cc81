#include "support/EditorWorld.h"

namespace {

class TreeDragTest : public ::testing::Test, protected EditorWorld {
 protected:
    TreeDragTest() { openPlant(); }
    void openPlant() {
        const std::string nested = tag("I1") + branch("C", tag("I2"));
        const std::string plant = branch("B", nested) + branch("D", tag("X")) + tag("x");
        open("/house.xml", configuration(plc("P", plant) + plc("Q", tag("I2"))));
        click("P.B.C.I2");
    }
};

TEST_F(TreeDragTest, MovesOrCopiesANodeWithWhatIsBelow) {
    constexpr int ctrl = TreeDrag::ctrlMask;
    const std::tuple<std::string, std::string, int, std::string, std::string> cases[] = {
        {"P.B", "P.D", 0, "P[D[X B[I1 C[I2]]] x] Q[I2]", "P.D:"},
        {"P.B", "Q", ctrl, "P[B[I1 C[I2]] D[X] x] Q[I2 B[I1 C[I2]]]", "P.B.C.I2:"},
        {"P.x", "Q", ctrl, "P[B[I1 C[I2]] D[X] x] Q[I2 x]", "P.B.C.I2:"},
        {"P", "Q", 0, "Q[I2 P[]]", "Q:"}};  // the node only, but a save keeps the contents
    for (const auto& [from, to, shift, left, selected] : cases) {
        openPlant();
        const auto item = document.items().at("P.B.C.I2");
        drag(from, to, shift);
        EXPECT_EQ(state(), left + " " + selected + " P.B.C.I2") << "the list is as it was";
        EXPECT_EQ(document.items().find(from == "P.B" ? to + ".B.C.I2" : "P.B.C.I2"), item);
        EXPECT_TRUE(document.tree().nodeAt(to + "." + from.back()).expanded());
        EXPECT_EQ(editor.treeDrag().dropHighlight(), nullptr);
        EXPECT_EQ(desktop.pointer, Pointer::normal);
        EXPECT_EQ(savedAndRead(), from == "P" ? "P[B[I1 C[I2]] D[X] x] Q[I2]" : left);
    }
}

TEST_F(TreeDragTest, CopiesShareARecordThoughEachHasAName) {
    drag("P.x", "Q", TreeDrag::ctrlMask);
    EXPECT_EQ(document.items().at("P.x")->sKey, "Q.x");
    click("Q.x");
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtItemName.text = "y";
        form.cmdOk_Click();
    });
    editor.TreeView1_DblClick();
    click("Q");
    EXPECT_EQ(state(), "P[B[I1 C[I2]] D[X] x] Q[I2 y] Q: Q.I2 Q.y*");
    click("P");
    EXPECT_EQ(rows(), "x||EIS1|1/2/3|READ|0A03\n");
    EXPECT_EQ(savedAndRead(), "P[B[I1 C[I2]] D[X] x] Q[I2 y]");
}

TEST_F(TreeDragTest, ChangesNothingWhereThereIsNoPlace) {
    const std::string unable = "Unable to drag nodes here\n";
    const std::string inUse = "Name already in use at this level. Move not allowed\n";
    const auto dotted = std::make_shared<clsItem>();
    dotted->sKey = "Q." + (dotted->sName = "D.X");
    document.enter(dotted, document.tree().nodeAt("Q"));
    const std::string before = state();
    const std::tuple<std::string, std::string, std::string, MessageIcon> cases[] = {
        {"P.B", "P.B.C", unable, MessageIcon::exclamation},
        {"P.B", "P.B", unable, MessageIcon::exclamation},
        {"Q.I2", "P.x", unable, MessageIcon::exclamation},
        {"P.B.C.I2", "Q", inUse, MessageIcon::stop},
        {"P.x", "P", "", MessageIcon::none},
        {"P.x", "", "", MessageIcon::none},
        {"config", "Q", "", MessageIcon::none},
        {"P.x", "P.D", "", MessageIcon::none},  // there is X; records do not differ by letter case
        {"P.D", "Q", errorIn("CopySubTree", ErrorNumber::keyTaken), MessageIcon::none}};
    for (const auto& [from, to, message, icon] : cases)
        for (const int shift : {0, TreeDrag::ctrlMask}) {
            desktop.lastIcon = MessageIcon::none;
            drag(from, to, shift);
            EXPECT_EQ(told() + state(), message + before) << from;
            EXPECT_EQ(desktop.lastIcon, icon) << from;
            // An error that ends the drop silently leaves the pointer, too.
            const bool isError = from == "config" || to == "P.D";
            EXPECT_EQ(desktop.pointer, isError ? Pointer::icon : Pointer::normal) << from;
        }
}

TEST_F(TreeDragTest, CopiesWhenCtrlWasHeldAsTheRightButtonWentDown) {
    TreeDrag& drag = editor.treeDrag();
    Node& item = document.tree().nodeAt("P.x");
    for (const int shift : {0, 1, 2, 3, 4, 5, 6, 7}) {
        EXPECT_TRUE(drag.TreeView1_MouseDown(2, shift, &item));
        EXPECT_FALSE(drag.TreeView1_MouseDown(1, 7 - shift, &item));
        EXPECT_EQ(static_cast<int>(drag.TreeView1_OLEStartDrag()), (shift & 2) != 0 ? 1 : 2);
        drag.TreeView1_OLEGiveFeedback();
        drag.TreeView1_OLEDragOver(&document.tree().nodeAt("Q"));
        EXPECT_EQ(drag.source()->key() + drag.dropHighlight()->key(), "P.xQ");
        drag.cancelled();
        EXPECT_TRUE(drag.dropHighlight() == nullptr && desktop.pointer == Pointer::normal);
    }
    EXPECT_FALSE(drag.TreeView1_MouseDown(2, 0, nullptr));
}

}  // namespace
