#include "model/ConfigTree.h"

#include <gtest/gtest.h>

#include "model/RunTimeError.h"

namespace {

std::string keyOf(const Node* node) { return node != nullptr ? node->key().string() : "none"; }

/// Writes down what a view hears and, where a call precedes or follows a change, the nodes that
/// are there, in the order in which they were added.
struct ListeningView : ConfigTree::Listener {
    explicit ListeningView(ConfigTree& theTree) : tree(theTree) { tree.setListener(this); }

    void hear(const std::string& what) { heard += what + " "; }
    void hearNodes(const std::string& what) {
        std::string keys;
        for (const Node* node : tree.nodes())
            keys += node->key();
        hear(what + ":" + keys);
    }
    void hearRows(const std::string& what, const Node& parent) {
        std::string rows;
        for (const Node* child : ConfigTree::GetChildren(parent))
            rows += std::to_string(ConfigTree::rowOf(*child)) + child->key();
        hear(what + ":" + rows);
    }
    void aboutToAdd(const Node* parent, int row) override {
        hearNodes("add" + std::to_string(row) + keyOf(parent));
    }
    void added() override { hearNodes("added"); }
    void aboutToRemove(const Node& node) override {
        hearNodes("remove" + std::to_string(ConfigTree::rowOf(node)) + node.key());
    }
    void removed() override { hearNodes("removed"); }
    void changed(const Node& node) override { hear(node.key() + "=" + node.text()); }
    void aboutToReorder(const Node& parent) override { hearRows("sort", parent); }
    void reordered(const Node& parent) override { hearRows("sorted", parent); }
    void aboutToReset() override { hearNodes("resetting"); }
    void reset() override { hearNodes("reset"); }
    void selectionChanged() override { hear("select:" + keyOf(tree.selected())); }
    void madeVisible(const Node& node) override { hear("show:" + node.key()); }

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
    tree.AddNode("r", "P", "Plant", NodeKind::plc);
    tree.AddNode("P", "a", "Annex", NodeKind::branch);
    add("P", "b", "Bath");
    add("a", "x", "Xenon");
    add("P", "c", "Cellar");
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
    add("P", "d", "Aisle");
    tree.sortChildren(at("P"));
    tree.sortChildren(at("P"));  // already sorted: nothing moves
    tree.remove(at("a"));
    tree.setText(at("d"), "Den");
    tree.setKey(at("d"), "e");
    {
        const ConfigTree::BulkChange bulk(tree);
        const ConfigTree::BulkChange within(tree);
        add("P", "1");
    }
    tree.clear();
    tree.AddNode("", "R", "", NodeKind::config);
    EXPECT_EQ(view.heard,
              "show:x select:b select:c remove1b:rPabxc removed:rPaxc add2P:rPaxc added:rPaxcd "
              "sort:0a1c2d sorted:0d1a2c remove1a:rPaxcd removed:rPcd d=Den "
              "resetting:rPce reset:rPce1 resetting:rPce1 reset: add0none: added:R ");
}

}  // namespace
