// The tree of a configuration: the only source of its structure and order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/KeyedSet.h"
#include "base/SharedText.h"

/// What a node stands for. Its tag is the name under which rules and views know the kind, and the
/// key of its picture; that of the root belongs to the views.
enum class NodeKind : std::uint8_t { config, plc, branch, item };

/// "config", "plc", "branch" or "item".
std::string_view tagOf(NodeKind kind);

/// One node: a key that is unique in the whole tree, the text that the user sees, a kind, and a
/// place among its siblings. Only its tree changes it.
class Node {
 public:
    const SharedText& key() const { return key_; }
    const SharedText& text() const { return text_; }
    NodeKind kind() const { return kind_; }
    /// Null for the root.
    Node* parent() const { return parent_; }
    /// First child to last.
    const std::vector<Node*>& GetChildren() const;
    /// True when the views show the node's children.
    bool expanded() const { return expanded_; }

    /// A device's node bears the device's name as its key, all others the key of their place.
    bool isDevice() const { return kind_ == NodeKind::plc && key_ == text_; }
    /// The bare node that stands where a device was dropped: it has no record.
    bool isDroppedDevice() const { return kind_ == NodeKind::plc && key_ != text_; }

 private:
    friend class ConfigTree;

    SharedText key_;
    SharedText text_;
    Node* parent_ = nullptr;
    std::unique_ptr<std::vector<Node*>> children_;  // most nodes have none
    mutable std::uint32_t row_ = 0;
    mutable bool childRowsKnown_ = true;
    NodeKind kind_ = NodeKind::config;
    bool expanded_ = false;
    bool leaving_ = false;       // while it is being taken out
    bool isPresent_ = false;     // it is in the tree that is shown
    bool isReferredTo_ = false;  // by a Reference
};

/// The configuration tree: one root, any depth. Nodes are found by key (matched exactly) in
/// constant time. It also holds what the views show of it: which node is selected, as the rules of
/// names and keys start there, and which nodes are expanded. That is no part of the configuration,
/// so it may be set through a constant tree too.
///
///     tree.AddNode("", "config", "C:\\house.xml", NodeKind::config);
///     tree.AddNode("config", "Plant", "Plant", NodeKind::plc);
///     tree.AddNode("Plant", "Plant.Floor1", "Floor1", NodeKind::branch);
class ConfigTree {
    struct Keys {
        static bool isEmpty(const std::unique_ptr<Node>& node) { return node == nullptr; }
        static const SharedText& keyOf(const std::unique_ptr<Node>& node) { return node->key(); }
        static bool equal(std::string_view a, std::string_view b) { return a == b; }
    };
    using Nodes = KeyedSet<std::unique_ptr<Node>, Keys>;

 public:
    /// Hears of what views show: which nodes there are, in which order, with which texts and
    /// signs, and which is selected. Not of keys, nor of what is expanded. The calls in pairs
    /// enclose the change.
    class Listener {
     public:
        virtual ~Listener() = default;

        /// `parent` is null for the root; `row` is the place that the new node takes.
        virtual void aboutToAdd(const Node* parent, int row) = 0;
        virtual void added() = 0;
        virtual void aboutToRemove(const Node& node) = 0;
        virtual void removed() = 0;
        /// The node's text is another one, or something in its record.
        virtual void changed(const Node& node) = 0;
        /// Something is another in the records of many nodes.
        virtual void recordsChanged() = 0;
        virtual void aboutToReorder(const Node& parent) = 0;
        virtual void reordered(const Node& parent) = 0;
        /// Everything may have changed; nodes that a view knew may be gone.
        virtual void aboutToReset() = 0;
        virtual void reset() = 0;
        /// Another node, or none, is selected.
        virtual void selectionChanged() = 0;
        /// The node is to be scrolled into view; its parents are expanded.
        virtual void madeVisible(const Node& node) = 0;
    };

    /// While one lives, the listener hears nothing; at its end, one reset. For work on many
    /// nodes. Once a node is removed meanwhile, pending events must wait until that end: a view
    /// still paints the nodes that it knew.
    class BulkChange {
     public:
        explicit BulkChange(const ConfigTree& tree);
        BulkChange(const BulkChange&) = delete;
        BulkChange& operator=(const BulkChange&) = delete;
        ~BulkChange();

     private:
        const ConfigTree& tree_;
        Listener* listener_;
    };

    /// Remembers one node through whatever becomes of its key, text and place: a safe pointer to
    /// keep while a dialog or a message box is open. Must not outlive the tree.
    class Reference {
     public:
        explicit Reference(const ConfigTree& tree, Node* node = nullptr) : tree_(tree) {
            *this = node;
        }
        Reference(const Reference&) = delete;
        Reference& operator=(const Reference&) = delete;
        ~Reference() { *this = nullptr; }

        Reference& operator=(Node* node);
        /// Null while the node is not in the tree that is shown: a removed node may come back.
        Node* get() const { return node_ != nullptr && node_->isPresent_ ? node_ : nullptr; }
        /// The same. Raises ErrorNumber::objectNotSet in place of null.
        Node& node() const;
        /// The node's text, also when it is gone: then the last that it had.
        const SharedText& text() const { return node_ == nullptr ? lastText_ : node_->text_; }

     private:
        friend class ConfigTree;

        const ConfigTree& tree_;
        Node* node_ = nullptr;  // null once it cannot come back
        SharedText lastText_;
    };

    /// Nodes that were taken out of a tree, with all below them, and where they were: they can be
    /// put back.
    class Cut {
     public:
        Cut() = default;
        Cut(Cut&&) noexcept = default;
        Cut& operator=(Cut&& other) noexcept {
            std::swap(tree_, other.tree_);
            nodes_.swap(other.nodes_);
            tops_.swap(other.tops_);
            return *this;
        }
        Cut(const Cut&) = delete;
        Cut& operator=(const Cut&) = delete;
        ~Cut();

        std::size_t nodeCount() const { return nodes_.size(); }

     private:
        friend class ConfigTree;
        struct Top {
            Node* node;
            Node* parent;
            std::size_t row;
        };

        const ConfigTree* tree_ = nullptr;
        std::vector<Nodes::Taken> nodes_;  // each after its parent
        std::vector<Top> tops_;            // those with one parent follow each other, by row
    };

    ConfigTree() = default;
    /// A tree beside the one that is shown, to move nodes to.
    explicit ConfigTree(const ConfigTree* shown) : shown_(shown) {}
    ConfigTree(const ConfigTree&) = delete;
    ConfigTree& operator=(const ConfigTree&) = delete;
    ~ConfigTree() = default;

    /// The one listener, or null.
    void setListener(Listener* listener) const { listener_ = listener; }

    /// Appends a node as last child of the node with the key `parentKey` (empty for the root).
    /// Raises ErrorNumber::keyNotUnique when the key exists, ErrorNumber::elementNotFound when
    /// the parent does not or is an item, and ErrorNumber::invalidCall for an empty key or a second
    /// root.
    Node& AddNode(const SharedText& parentKey, SharedText key, SharedText text, NodeKind kind);
    /// The same below a node that is at hand (null for the root).
    Node& AddNode(Node* parent, SharedText key, SharedText text, NodeKind kind);

    /// The node with that key, or null.
    Node* FindNode(const SharedText& key) const {
        const auto* node = nodes_.find(key);
        return node == nullptr ? nullptr : node->get();
    }

    /// The same for a key that must exist. Raises ErrorNumber::elementNotFound.
    Node& nodeAt(const SharedText& key) const;

    /// Takes the nodes, and everything below them, out of the tree, in a time that grows with their
    /// number and that of their siblings. The root is not among them, and none is below another. If
    /// the selected node goes with them, its next sibling that stays becomes selected, else the
    /// previous one, else the parent.
    Cut takeOut(const std::vector<Node*>& nodes);

    /// Puts nodes back where they were taken out: their keys must be free, and their siblings the
    /// same as then, in whatever order.
    void putBack(Cut&& cut);

    /// Takes the node out of this tree, with everything below it, and makes it the last child of
    /// the other tree's root, or puts it back: `there` says where it was in the other tree, and
    /// afterwards where it was in this one. Its keys must be free there.
    void moveTo(ConfigTree& other, Node& node, Cut& there);

    void clear();

    /// Raises ErrorNumber::keyNotUnique when another node has the key, and
    /// ErrorNumber::invalidCall for an empty key; then nothing has changed.
    void setKey(Node& node, SharedText key);
    void setText(Node& node, SharedText text);
    /// Has the listener hear that something in the records of nodes is another.
    void recordsChanged() const;

    /// Counts the changes of nodes, texts and order: for what is worked out from the whole tree and
    /// kept until then.
    std::uint64_t changes() const { return changes_; }
    /// Counts the calls of recordsChanged().
    std::uint64_t recordChanges() const { return recordChanges_; }

    /// Puts the node's children into alphabetical order of their texts; equal texts keep their
    /// order. Children added later are appended as ever.
    /// True when that changed anything; then `before` is the order of before.
    bool sortChildren(Node& node, std::vector<Node*>& before);
    /// Gives the node's children another order, and `children` the present one.
    void swapChildren(Node& node, std::vector<Node*>& children);

    /// Null before there is one.
    Node* root() const { return root_; }

    /// Null when no node is selected.
    Node* selected() const { return selected_; }
    void select(Node* node) const;

    /// True for a node that a Reference remembers, or did.
    static bool isReferredTo(const Node& node) { return node.isReferredTo_; }
    /// What refers to one node refers to the other from now on: it took its place.
    void redirect(const Node& from, Node& to) const;

    /// True for a node that is in this tree, and this is the tree that is shown.
    static bool isPresent(const Node& node) { return node.isPresent_; }

    /// Expands all parents of the node and has the view scroll to it.
    void ensureVisible(Node& node) const;
    /// The same, and selects it.
    void show(Node& node) const;
    static void setExpanded(Node& node, bool expanded) { node.expanded_ = expanded; }

    /// The node's place among its siblings, from 0.
    static int rowOf(const Node& node);

    /// All nodes, in the order in which they were added.
    ///
    ///     for (const auto& node : tree.nodes()) use(*node);
    const auto& nodes() const { return nodes_; }

    /// See KeyedSet.
    std::size_t holes() const { return nodes_.holes(); }
    void compact(const std::vector<Cut*>& reserved);

 private:
    static Node* heirOf(const Node& leaving);
    static void addChild(Node& parent, Node& child);
    static void removeChildren(const std::vector<Node*>& nodes, std::vector<Cut::Top>& removed);
    static void insertChildren(const std::vector<Cut::Top>& tops);
    void forget(const Node& node) const;

    Nodes nodes_;
    Node* root_ = nullptr;
    const ConfigTree* shown_ = this;
    mutable Node* selected_ = nullptr;
    mutable Listener* listener_ = nullptr;
    mutable std::unordered_multimap<const Node*, Reference*> references_;
    std::uint64_t changes_ = 0;
    mutable std::uint64_t recordChanges_ = 0;
};

/// Walks everything below a node, each node before its children, children first to last. No
/// recursion: a tree may be as deep as a file makes it.
///
///     for (TreeWalk walk(top); Node* node = walk.next();) ...
class TreeWalk {
 public:
    explicit TreeWalk(const Node& top) : current_(&top) {}

    /// The next node; null at the end.
    Node* next();
    /// Passes over what is below the node that next() gave last.
    void skipChildren() { entered_ = false; }
    /// How deep that node lies below the top: 1 for a child of the top.
    std::size_t depth() const { return path_.size(); }

 private:
    struct Place {
        const Node* parent;
        std::size_t child;
    };
    std::vector<Place> path_;
    const Node* current_;
    bool entered_ = true;
};
