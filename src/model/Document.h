// The open configuration and its state.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/Contents.h"
#include "model/History.h"

/// The one document of the editor: the tree (structure and order), the three registries of
/// records (data), the global settings and the state that commands share. It alone changes the
/// configuration, so that a node, its record and their keys always agree and every change can be
/// undone; everyone else reads it, and asks for a change:
///
///     const Document::Step step(document, "Add");
///     Node& branch = document.addByHand(record, device);
///     ...
///     document.undo();  // takes back all that was done in the step
///
/// A change checks first, and raises an error while nothing has changed yet.
class Document {
 public:
    /// The key of the root node, below which the devices are.
    static constexpr const char* rootKey = "config";

    Document() = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() = default;

    const ConfigTree& tree() const { return contents_.tree; }
    /// The nodes of devices that were dragged elsewhere, with all below them, under a root of its
    /// own. They are not shown any more, but their records stay and are saved. No key is in both
    /// trees.
    const ConfigTree& detached() const { return contents_.detached; }
    const Registry<clsPLC>& devices() const { return contents_.devices; }
    const Registry<clsItem>& items() const { return contents_.items; }
    const Registry<clsBranch>& branches() const { return contents_.branches; }
    const GlobalSets& settings() const { return contents_.settings; }

    /// A configuration, new or loaded, is shown.
    bool open = false;
    /// It has no unsaved change.
    bool saved = false;

    /// The numbers of the next default names.
    int deviceCounter() const { return counters_.devices; }
    int branchCounter() const { return counters_.branches; }
    int itemCounter() const { return counters_.items; }

    /// Path of the configuration file: the root's text. Raises ErrorNumber::objectNotSet when
    /// there is no root.
    std::string currentPath() const;

    /// The tree's selected node. Raises ErrorNumber::objectNotSet when there is none.
    Node& selectedNode() const;

    /// The node of a device of that name, in the tree or detached; null when there is none.
    const Node* deviceNode(const SharedText& name) const;

    /// The device of a node. Raises ErrorNumber::invalidCall for a node that is no device's, also
    /// when its key is that of a device.
    const clsPLC& deviceAt(const Node& node) const;

    /// The item node with that key. Raises ErrorNumber::invalidCall for the key of another node, or
    /// of none: a row of the list may be out of date.
    Node& itemNodeAt(const SharedText& key) const;

    /// The item as its node has it. A copy made by dragging shares the record of its source, which
    /// has the key and the name of one of the two; here each has its own. Raises
    /// ErrorNumber::invalidCall for a node without a record.
    std::shared_ptr<const clsItem> itemAt(const Node& node) const;

    /// True when a node, shown or detached, has the key.
    bool hasNode(const SharedText& key) const {
        return tree().FindNode(key) != nullptr || detached().FindNode(key) != nullptr;
    }

    /// All that is changed while a Step lives is one step of undoing, also when an error ends it.
    /// Steps within a step are part of it.
    class Step {
     public:
        /// What a user reads after "Undo": the verb, and what it was done to, e.g. "Delete of item
        /// Lamp" or, where a noun is given, "Paste of 12 names".
        Step(Document& document, std::string_view verb, std::string_view noun = {})
            : document_(document) {
            document_.history_.begin(document_.state(), verb, noun);
        }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step() { document_.history_.end(document_.contents_); }

     private:
        Document& document_;
    };

    /// What undo() would take back and redo() make again; empty when there is nothing.
    std::string undoName() const { return history_.undoName(); }
    std::string redoName() const { return history_.redoName(); }
    /// Takes the last step back, or makes it again. Gives the node that it is about, or the parent
    /// of the nodes; null when there was no step, or it is about none. The document counts as saved
    /// when it did so before (after) the step, and has not been saved since.
    Node* undo() { return go(&History::undo); }
    Node* redo() { return go(&History::redo); }
    /// The bytes that the history takes, roughly.
    std::size_t historyBytes() const { return history_.bytes(); }

    /// Enters a record in its registry and appends its node in the tree: a device below the root,
    /// a branch or an item below `parent`. Raises ErrorNumber::keyTaken, ErrorNumber::keyNotUnique
    /// or the errors of ConfigTree::AddNode. Outside a Step, as when a file is read, nothing can be
    /// undone any more.
    Node& add(const std::shared_ptr<clsPLC>& device);
    Node& add(const std::shared_ptr<clsBranch>& branch, Node& parent);
    Node& add(const std::shared_ptr<clsItem>& item, Node& parent);

    /// The same for what the user has entered in a dialog: the number of the next default name goes
    /// up, and there is an unsaved change.
    template <typename... Arguments>
    Node& addByHand(Arguments&&... arguments) {
        Node& node = add(std::forward<Arguments>(arguments)...);
        countUp(node.kind());
        saved = false;
        return node;
    }

    /// Gives an item, a device or a branch what the user has entered in its dialog; then there is
    /// an unsaved change. Raises the errors of the record's SetByForm, and ErrorNumber::keyTaken or
    /// ErrorNumber::keyNotUnique when the key of the node, or one below it, is in use.
    void change(Node& item, const ItemFields& fields);
    void change(Node& item, const ItemProperties& properties);
    void change(Node& device, const DeviceFields& fields);
    void renameBranch(Node& branch, const SharedText& name);
    /// The same for an item's name, and an item's comment.
    void renameItem(Node& item, const SharedText& name);
    void setComment(Node& item, const SharedText& comment);

    /// Raises what renameItem() would. Nothing is changed.
    void requireFreeKeys(const Node& node, const SharedText& newKey) const;

    /// A place for a dragged node, with all below it, as last child of another: keys that were
    /// found free.
    class Placement {
        friend class Document;
        Placement(Node& source, Node& target) : source_(source), target_(target) {}

        Node& source_;
        Node& target_;
        std::vector<SharedText> keys_;  // of the node and, in the order of a walk, all below it
    };
    /// Finds a place. Raises ErrorNumber::keyTaken or ErrorNumber::keyNotUnique when the node's new
    /// key is in use.
    Placement placementOf(Node& source, Node& target) const;
    /// Goes on with what is below the node. Raises the same errors.
    void placeContents(Placement& placement) const;

    /// Makes a copy, expanded: its branches and items share the records of their sources, and are
    /// entered with them once more. Of a device only a bare node is made, without a record.
    Node& copy(const Placement& placement) { return place(placement, false); }
    /// The same, and the source is removed; a device is detached.
    Node& move(const Placement& placement) { return place(placement, true); }

    /// Removes the node and everything below it, with their records.
    void RemoveSubtree(Node& node) { remove({&node}); }
    /// The same for many nodes. None may be below another.
    void remove(const std::vector<Node*>& nodes);

    void setSettings(const GlobalSets& settings);

    /// Puts the node's children into alphabetical order. That is no step of undoing.
    void sortChildren(Node& node);

    /// The configuration has another file.
    void setPath(const std::string& path);
    /// It was saved.
    void noteSaved();

    /// One more than the number of records of each kind.
    void setCountersFromRecords();

    /// Empties the tree, the registries and the history, and gives their memory back to the system.
    void clear();

    /// Empties all that, and adds the root for the file at `path`, visible and selected.
    void startAt(const std::string& path);
    /// The same for a new configuration, with default settings; the counters begin at 0.
    void startNew(const std::string& path);

 private:
    void requireFreeKey(NodeKind kind, const SharedText& key) const;
    void requireFreeKey(const Node& node, const SharedText& key) const;
    template <typename Record>
    Node& enter(const std::shared_ptr<Record>& record, const SharedText& key,
                const SharedText& name, Node* parent, NodeKind kind);
    void countUp(NodeKind kind);
    void UpdateChildKeys(const Node& node);
    void copyRecord(const Node& source, const SharedText& newKey);
    Node& place(const Placement& placement, bool move);

    DocumentState state() const { return {saved, counters_}; }
    Node* go(Node* (History::*way)(DocumentState&, Contents&));

    Contents contents_;
    Counters counters_;
    History history_;
};
