#include "model/ConfigTree.h"

#include "support/EditorWorld.h"

namespace {

/// Writes down what a view hears, with the tree as it is at that moment.
struct ListeningView : ConfigTree::Listener {
    explicit ListeningView(ConfigTree& theTree) : tree(theTree) { tree.setListener(this); }

    void hear(const std::string& what) {
        heard += what + " " + (tree.root() == nullptr ? "" : contentsOf(*tree.root())) + "; ";
    }
    void aboutToAdd(const Node* parent, int row) override {
        hear("add " + std::to_string(row) + " " +
             (parent == nullptr ? "" : parent->key().string()));
    }
    void added() override { hear("added"); }
    void aboutToRemove(const Node& node) override {
        hear("remove " + std::to_string(ConfigTree::rowOf(node)) + " " + node.key().string());
    }
    void removed() override { hear("removed"); }
    void changed(const Node& node) override { hear("changed " + node.key().string()); }
    void recordsChanged() override { hear("records"); }
    void aboutToReorder(const Node& parent) override { hear("sort " + parent.key().string()); }
    void reordered(const Node& parent) override { hear("sorted " + parent.key().string()); }
    void aboutToReset() override { hear("("); }
    void reset() override { hear(")"); }
    void selectionChanged() override {
        hear("select " + (tree.selected() == nullptr ? "none" : tree.selected()->key().string()));
    }
    void madeVisible(const Node& node) override { hear("show " + node.key().string()); }

    ConfigTree& tree;
    std::string heard;
};

TEST(Tree, TellsItsListenerOfEachChangeBeforeAndAfterItAndOfNoneThatIsRefused) {
    ConfigTree tree;
    const auto add = [&](const char* parentKey, const char* key, const char* text = "") {
        tree.AddNode(parentKey, key, text, NodeKind::item);
    };
    const auto at = [&](const char* key) -> Node& { return tree.nodeAt(key); };
    tree.AddNode("", "r", "C:\\house.xml", NodeKind::config);
    tree.AddNode("r", "P", "P", NodeKind::plc);
    tree.AddNode("P", "a", "M", NodeKind::branch);
    add("P", "b", "B");
    add("a", "x", "X");
    add("P", "c", "T");
    ListeningView view(tree);
    EXPECT_THROW(add("P", "x"), RunTimeError);
    EXPECT_THROW(add("nowhere", "n"), RunTimeError);
    EXPECT_THROW(add("x", "n"), RunTimeError);  // an item
    EXPECT_THROW(add("P", ""), RunTimeError);
    EXPECT_THROW(add("", "root2"), RunTimeError);
    EXPECT_THROW(tree.setKey(at("a"), "b"), RunTimeError);
    EXPECT_THROW(tree.setKey(at("a"), ""), RunTimeError);
    tree.ensureVisible(at("x"));
    tree.select(&at("b"));
    tree.select(&at("b"));
    tree.remove(at("b"));
    add("P", "d", "K");
    tree.remove(at("a"));
    tree.setText(at("d"), "Q");
    tree.setKey(at("d"), "e");
    {
        const ConfigTree::BulkChange bulk(tree);
        const ConfigTree::BulkChange within(tree);
        add("P", "n", "N");
    }
    tree.clear();
    tree.AddNode("", "R", "", NodeKind::config);
    EXPECT_EQ(view.heard,
              "show x P[M[X] B T]; select b P[M[X] B T]; select c P[M[X] B T]; "
              "remove 1 b P[M[X] B T]; removed P[M[X] T]; add 2 P P[M[X] T]; "
              "added P[M[X] T K]; remove 0 a P[M[X] T K]; removed P[T K]; changed d P[T Q]; "
              "( P[T Q]; ) P[T Q N]; ( P[T Q N]; ) ; add 0  ; added ; ");
}

}  // namespace
