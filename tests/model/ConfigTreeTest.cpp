#include "model/ConfigTree.h"

#include <gmock/gmock.h>

#include <string>

#include "model/RunTimeError.h"

namespace {

auto raises(ErrorNumber number) {
    return testing::Throws<RunTimeError>(testing::Property(&RunTimeError::number, number));
}

std::string keyOf(const Node* node) { return node != nullptr ? node->key() : "none"; }

/// The keys of a node's children, each after the row that the tree gives for it.
std::string rowsOf(const Node& parent) {
    std::string rows;
    for (const Node* child : ConfigTree::GetChildren(parent))
        rows += std::to_string(ConfigTree::rowOf(*child)) + child->key() + " ";
    return rows;
}

std::string inOrderOfAdding(const ConfigTree& tree) {
    std::string keys;
    for (const Node* node = tree.firstAdded(); node; node = ConfigTree::addedAfter(*node))
        keys += node->key();
    return keys;
}

/// The device P in the root "r"; in it stand the branch a (with the item x) and the items b, c.
class Tree : public testing::Test {
 protected:
    Tree() {
        tree.AddNode("", "r", "C:\\house.xml", NodeKind::config);
        tree.AddNode("r", "P", "Plant", NodeKind::plc);
        tree.AddNode("P", "a", "Annex", NodeKind::branch);
        add("P", "b", "Bath");
        add("a", "x", "Xenon");
        add("P", "c", "Cellar");
    }
    Node& add(const char* parentKey, const char* key, const char* text = "") {
        return tree.AddNode(parentKey, key, text, NodeKind::item);
    }
    Node& at(std::string_view key) { return tree.nodeAt(key); }

    ConfigTree tree;
};

/// Writes down what a view hears and, where a call precedes or follows a change, the nodes that
/// are there.
struct ListeningView : ConfigTree::Listener {
    explicit ListeningView(ConfigTree& theTree) : tree(theTree) { tree.setListener(this); }

    ConfigTree& tree;
    std::string heard;

    void hear(const std::string& what) { heard += what + " "; }
    void hearNodes(const std::string& what) { hear(what + ":" + inOrderOfAdding(tree)); }
    void aboutToAdd(const Node* parent, int row) override {
        hearNodes("add" + std::to_string(row) + keyOf(parent));
    }
    void added() override { hearNodes("added"); }
    void aboutToRemove(const Node& node) override {
        hearNodes("remove" + std::to_string(ConfigTree::rowOf(node)) + node.key());
    }
    void removed() override { hearNodes("removed"); }
    void changed(const Node& node) override { hear(node.key() + "=" + node.text()); }
    void aboutToReorder(const Node& parent) override { hear("sort:" + rowsOf(parent)); }
    void reordered(const Node& parent) override { hear("sorted:" + rowsOf(parent)); }
    void aboutToReset() override { hearNodes("resetting"); }
    void reset() override { hearNodes("reset"); }
    void selectionChanged() override { hear("select:" + keyOf(tree.selected())); }
    void madeVisible(const Node& node) override { hear("show:" + node.key()); }
};

TEST_F(Tree, RefusesNodesThatHaveNoPlaceOrNoKeyOfTheirOwn) {
    EXPECT_THAT([&] { add("P", "x"); }, raises(ErrorNumber::keyNotUnique));
    EXPECT_THAT([&] { add("nowhere", "n"); }, raises(ErrorNumber::elementNotFound));
    EXPECT_THAT([&] { add("x", "n"); }, raises(ErrorNumber::elementNotFound));  // an item
    EXPECT_THAT([&] { add("P", ""); }, raises(ErrorNumber::invalidCall));
    EXPECT_THAT([&] { add("", "root2"); }, raises(ErrorNumber::invalidCall));
    EXPECT_THAT([&] { tree.setKey(at("a"), "b"); }, raises(ErrorNumber::keyNotUnique));
    EXPECT_THAT([&] { tree.setKey(at("a"), ""); }, raises(ErrorNumber::invalidCall));
    EXPECT_EQ(rowsOf(at("P")), "0a 1b 2c ");
    EXPECT_EQ(inOrderOfAdding(tree), "rPabxc");
}

TEST_F(Tree, TellsItsListenerOfEachChangeBeforeAndAfterIt) {
    ListeningView view(tree);
    tree.ensureVisible(at("x"));
    EXPECT_TRUE(at("r").expanded() && at("P").expanded() && at("a").expanded());
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
        add("P", "2");
    }
    tree.clear();
    EXPECT_EQ(tree.selected(), nullptr);
    tree.AddNode("", "R", "", NodeKind::config);
    EXPECT_EQ(view.heard,
              "show:x select:b select:c remove1b:rPabxc removed:rPaxc add2P:rPaxc added:rPaxcd "
              "sort:0a 1c 2d  sorted:0d 1a 2c  remove1a:rPaxcd removed:rPcd d=Den "
              "resetting:rPce reset:rPce12 resetting:rPce12 reset: add0none: added:R ");
}

TEST_F(Tree, SortsChildrenIgnoringCaseAndAccentsAndKeepsTheOrderOfEqualOnes) {
    tree.AddNode("r", "Q", "Quay", NodeKind::plc);
    for (const char* text : {"zinc", "\u00C4rger", "Zebra", "apple", "\u00E9tage", "Etui"})
        add("Q", text, text);
    std::string beds;  // enough that a sort which mixes up equal ones would do so
    for (int i = 2; i < 32; ++i) {
        const std::string key = "bed" + std::to_string(i);
        add("Q", key.c_str(), "bed");
        beds += std::to_string(i) + key + " ";
    }
    tree.sortChildren(at("Q"));
    add("Q", "last", "aaa");
    EXPECT_EQ(rowsOf(at("Q")),
              "0apple 1\u00C4rger " + beds + "32\u00E9tage 33Etui 34Zebra 35zinc 36last ");
}

}  // namespace
