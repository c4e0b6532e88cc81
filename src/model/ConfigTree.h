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

/// What a node represents. Views use the tag of the kind (see tagOf) as the key of the icon; the
/// icon of the root is chosen by the views.
enum class NodeKind : std::uint8_t { config, plc, branch, item };

/// "config", "plc", "branch" or "item".
std::string_view tagOf(NodeKind kind);

/// A node has a key that is unique in the tree, the text that the user sees, a kind, and a place
/// among its siblings. Only its tree changes it.
///
///     const Node& node = tree.nodeAt("Plant.Floor1");
///     for (const Node* child : node.GetChildren())
///         if (child->kind() == NodeKind::item) use(child->text());
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

    /// True for the node of a device. Its key is its name; the key of any other node below the root
    /// begins with the key of its parent.
    bool isDevice() const { return kind_ == NodeKind::plc && key_ == text_; }
    /// True for the node that dropping a device makes: it has no record.
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
    bool isBeingRemoved_ = false;  // within takeOut()
    bool isPresent_ = false;       // in the shown tree
    bool isReferredTo_ = false;    // by a Reference
};

/// The configuration tree: one root, any depth. Finding a node by its exact key takes constant
/// time. The tree also holds view state: the selected node, which rules of names and keys use, and
/// the expanded nodes. View state is not part of the configuration, so it may be set in a constant
/// tree.
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
    /// Is called for changes that views show: nodes, their order, texts and warning signs, and the
    /// selection. Is not called for changes of keys and of expanded nodes. Calls in pairs come
    /// before and after the change.
    class Listener {
     public:
        virtual ~Listener() = default;

        /// `parent` is null for the root; `row` is the place of the new node among its siblings.
        virtual void aboutToAdd(const Node* parent, int row) = 0;
        virtual void added() = 0;
        virtual void aboutToRemove(const Node& node) = 0;
        virtual void removed() = 0;
        /// The node's text or its record has changed.
        virtual void changed(const Node& node) = 0;
        /// The records of many nodes may have changed.
        virtual void recordsChanged() = 0;
        virtual void aboutToReorder(const Node& parent) = 0;
        virtual void reordered(const Node& parent) = 0;
        /// Everything may change; nodes that a view refers to may be destroyed.
        virtual void aboutToReset() = 0;
        virtual void reset() = 0;
        /// The selection has changed; there may be none.
        virtual void selectionChanged() = 0;
        /// Asks the view to scroll to the node; its parents are expanded.
        virtual void madeVisible(const Node& node) = 0;
    };

    /// For changes of many nodes: as long as the object exists, the listener is not called, except
    /// for one aboutToReset at the beginning and one reset at the end. After a node was removed,
    /// pending events must not be processed before that end: a view still paints the old nodes.
    ///
    ///     const ConfigTree::BulkChange bulk(tree);
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

    /// A safe pointer to a node, for use while a dialog or a message box is open. It follows the
    /// node when its key, text or place changes. Must not outlive the tree.
    ///
    ///     ConfigTree::Reference node(tree, tree.selected());
    ///     ask();  // other code may remove the node meanwhile
    ///     if (node.get() != nullptr) ...
    class Reference {
     public:
        explicit Reference(const ConfigTree& tree, Node* node = nullptr) : tree_(tree) {
            *this = node;
        }
        Reference(const Reference&) = delete;
        Reference& operator=(const Reference&) = delete;
        ~Reference() { *this = nullptr; }

        Reference& operator=(Node* node);
        /// Null while the node is not in the shown tree. Undo may bring a removed node back.
        Node* get() const { return node_ != nullptr && node_->isPresent_ ? node_ : nullptr; }
        /// The same, but raises ErrorNumber::objectNotSet instead of returning null.
        Node& node() const;
        /// The text of the node; after the node was destroyed, the last text that it had.
        const SharedText& text() const { return node_ == nullptr ? lastText_ : node_->text_; }

     private:
        friend class ConfigTree;

        const ConfigTree& tree_;
        Node* node_ = nullptr;  // null once the node is destroyed
        SharedText lastText_;
    };

    /// Nodes that were taken out of a tree, with all nodes below them and their former places, so
    /// that they can be put back.
    class RemovedNodes {
     public:
        RemovedNodes() = default;
        RemovedNodes(RemovedNodes&&) noexcept = default;
        RemovedNodes& operator=(RemovedNodes&& other) noexcept {
            std::swap(tree_, other.tree_);
            nodes_.swap(other.nodes_);
            tops_.swap(other.tops_);
            return *this;
        }
        RemovedNodes(const RemovedNodes&) = delete;
        RemovedNodes& operator=(const RemovedNodes&) = delete;
        ~RemovedNodes();

        std::size_t nodeCount() const { return nodes_.size(); }

     private:
        friend class ConfigTree;
        struct Top {
            Node* node;
            Node* parent;
            std::size_t row;  // among the siblings, from 0
        };

        const ConfigTree* tree_ = nullptr;
        std::vector<Nodes::Taken> nodes_;  // parents before their children
        std::vector<Top> tops_;            // grouped by parent, ordered by row
    };

    ConfigTree() = default;
    /// A tree that is not shown, to move nodes of the tree `shown` to.
    explicit ConfigTree(const ConfigTree* shown) : shown_(shown) {}
    ConfigTree(const ConfigTree&) = delete;
    ConfigTree& operator=(const ConfigTree&) = delete;
    ~ConfigTree() = default;

    /// Sets the only listener; null for none.
    void setListener(Listener* listener) const { listener_ = listener; }

    /// Appends a node as last child of the node with the key `parentKey`; an empty `parentKey` adds
    /// the root. Raises ErrorNumber::keyNotUnique when the key exists, ErrorNumber::elementNotFound
    /// when the parent does not exist or is an item, and ErrorNumber::invalidCall for an empty key
    /// or a second root.
    Node& AddNode(const SharedText& parentKey, SharedText key, SharedText text, NodeKind kind);
    /// The same with a pointer to the parent; null adds the root.
    Node& AddNode(Node* parent, SharedText key, SharedText text, NodeKind kind);

    /// The node with that key, or null.
    Node* FindNode(const SharedText& key) const {
        const auto* node = nodes_.find(key);
        return node == nullptr ? nullptr : node->get();
    }

    /// The node with that key. Raises ErrorNumber::elementNotFound when there is none.
    Node& nodeAt(const SharedText& key) const;

    /// Removes the nodes and everything below them, and returns them, so that putBack() can insert
    /// them again. The root cannot be removed, and no node may be below another one. Takes time
    /// proportional to the number of the nodes and their siblings. When the selected node is
    /// removed, the selection moves to the next sibling that is not removed, else to the previous
    /// one, else to the parent.
    RemovedNodes takeOut(const std::vector<Node*>& nodes);

    /// Puts nodes back at the places where they were taken out. Their keys must be free, and their
    /// siblings the same as before, in any order.
    void putBack(RemovedNodes&& removed);

    /// Moves the node and everything below it to the other tree. Their keys must be free there.
    /// `formerPlaces` contains the places that the nodes had in the other tree; when it is empty,
    /// the node becomes the last child of the other tree's root. Afterwards `formerPlaces` contains
    /// the places in this tree.
    void moveTo(ConfigTree& other, Node& node, RemovedNodes& formerPlaces);

    /// Destroys all nodes.
    void clear();

    /// Changes the key of one node; the keys of its children stay. Raises ErrorNumber::keyNotUnique
    /// when another node has the key, and ErrorNumber::invalidCall for an empty key; then nothing
    /// has changed.
    void setKey(Node& node, SharedText key);
    void setText(Node& node, SharedText text);
    /// Notifies the listener that records of nodes have changed.
    void recordsChanged() const;

    /// A counter of the changes of nodes, texts and order. It shows whether a cached result that
    /// was computed from the whole tree is still valid. It goes up once a change is complete.
    std::uint64_t changes() const { return changes_; }
    /// A counter of the calls of recordsChanged().
    std::uint64_t recordChanges() const { return recordChanges_; }

    /// Sorts the node's children alphabetically by their texts; equal texts keep their order.
    /// Children that are added later are appended at the end. Returns true when the order changed;
    /// then `before` contains the former order.
    bool sortChildren(Node& node, std::vector<Node*>& before);
    /// Exchanges the order of the node's children and that in `children`.
    void swapChildren(Node& node, std::vector<Node*>& children);

    /// Null in an empty tree.
    Node* root() const { return root_; }

    /// Null when no node is selected.
    Node* selected() const { return selected_; }
    void select(Node* node) const;

    /// True for a node to which a Reference refers, or once did.
    static bool isReferredTo(const Node& node) { return node.isReferredTo_; }
    /// Makes all references to `from` refer to `to`, which replaces it.
    void redirect(const Node& from, Node& to) const;

    /// True for a node in the shown tree; false for a removed or detached one.
    static bool isPresent(const Node& node) { return node.isPresent_; }

    /// Expands all parents of the node, and asks the view to scroll to it.
    void ensureVisible(Node& node) const;
    /// The same, and selects the node.
    void show(Node& node) const;
    static void setExpanded(Node& node, bool expanded) { node.expanded_ = expanded; }

    /// The node's place among its siblings, from 0.
    static int rowOf(const Node& node);

    /// All nodes, in the order in which they were added.
    ///
    ///     for (const auto& node : tree.nodes()) use(*node);
    const auto& nodes() const { return nodes_; }

    /// The number of free places of removed nodes, and their removal; see KeyedSet. The places in
    /// `reserved` stay free.
    std::size_t holes() const { return nodes_.holes(); }
    void compact(const std::vector<RemovedNodes*>& reserved);

 private:
    static Node* selectionAfterRemoving(const Node& removed);
    static void addChild(Node& parent, Node& child);
    static void removeChildren(const std::vector<Node*>& nodes,
                               std::vector<RemovedNodes::Top>& removed);
    static void insertChildren(const std::vector<RemovedNodes::Top>& tops);
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

/// Iterates over all nodes below a node in depth-first order, parents before their children. It
/// does not recurse, as a file may contain a tree of any depth.
///
///     for (TreeWalk walk(top); Node* node = walk.next();) ...
class TreeWalk {
 public:
    explicit TreeWalk(const Node& top) : current_(&top) {}

    /// The next node; null at the end.
    Node* next();
    /// Skips everything below the node that next() returned last.
    void skipChildren() { entered_ = false; }
    /// The depth of that node below the top: 1 for a child of the top.
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
