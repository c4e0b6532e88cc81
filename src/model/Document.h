// The open configuration and its state.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/Contents.h"
#include "model/History.h"

/// The open configuration: the tree (structure and order), the three registries of records (data),
/// the global settings, and the state that commands share. Only Document changes the configuration,
/// so that a node, its record and their keys always agree, and every change can be undone. All
/// other code reads it, and calls Document for a change:
///
///     const Document::Step step(document, "Add");
///     Node& branch = document.addByHand(record, device);
///     ...
///     document.undo();  // undoes all changes of the step
///
/// A change that raises an error has changed nothing.
class Document {
 public:
    /// The key of the root node. The devices are its children.
    static constexpr const char* rootKey = "config";

    Document() = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() = default;

    const ConfigTree& tree() const { return contents_.tree; }
    /// The detached tree: the nodes of devices that were dragged elsewhere, with all nodes below
    /// them, below a root of its own. It is not shown, but its records are saved. A key is never in
    /// both trees.
    const ConfigTree& detached() const { return contents_.detached; }
    const Registry<clsPLC>& devices() const { return contents_.devices; }
    const Registry<clsItem>& items() const { return contents_.items; }
    const Registry<clsBranch>& branches() const { return contents_.branches; }
    const GlobalSets& settings() const { return contents_.settings; }

    /// True when a configuration, new or loaded, is shown.
    bool open = false;
    /// True when there is no unsaved change.
    bool saved = false;

    /// The numbers in the next proposed names.
    int deviceCounter() const { return counters_.devices; }
    int branchCounter() const { return counters_.branches; }
    int itemCounter() const { return counters_.items; }

    /// The path of the configuration file, which is the text of the root. Raises
    /// ErrorNumber::objectNotSet when there is no root.
    std::string currentPath() const;

    /// The tree's selected node. Raises ErrorNumber::objectNotSet when there is none.
    Node& selectedNode() const;

    /// The node of the device with that name, in the tree or detached; null when there is none.
    const Node* deviceNode(const SharedText& name) const;

    /// The record of a device. Raises ErrorNumber::invalidCall when `node` is not the node of a
    /// device, even when its key is that of a device.
    const clsPLC& deviceAt(const Node& node) const;

    /// The item node with that key. Raises ErrorNumber::invalidCall when no node, or a node of
    /// another kind, has the key: a row of the list may be out of date.
    Node& itemNodeAt(const SharedText& key) const;

    /// The record of an item, with the key and the name of `node`. A copy made by dragging shares
    /// the record of its source, which contains the key and the name of only one of the two nodes.
    /// Raises ErrorNumber::invalidCall for a node without a record.
    std::shared_ptr<const clsItem> itemAt(const Node& node) const;

    /// True when a node in the tree or the detached tree has the key.
    bool hasNode(const SharedText& key) const {
        return tree().FindNode(key) != nullptr || detached().FindNode(key) != nullptr;
    }

    /// All changes during the lifetime of a Step are one undo step, also when an error ends it. A
    /// Step within another one is part of it.
    class Step {
     public:
        /// The user reads `verb` and the changed nodes after "Undo": "Delete of item Lamp" or, with
        /// the noun "name", "Paste of 12 names".
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

    /// The name of the step that undo() or redo() would take; empty when there is none.
    std::string undoName() const { return history_.undoName(); }
    std::string redoName() const { return history_.redoName(); }
    /// Undoes or redoes the last step. Returns the changed node, or the parent of several changed
    /// nodes; null when there was no step, or it changed no node. Undo sets `saved` to its value
    /// before the step, redo to its value after it, or to false when the document was saved in
    /// between.
    Node* undo() { return undoOrRedo(&History::undo); }
    Node* redo() { return undoOrRedo(&History::redo); }
    /// The memory of the history in bytes, roughly.
    std::size_t historyBytes() const { return history_.bytes(); }

    /// Adds a record to its registry, and a node to the tree: a device below the root, a branch or
    /// an item below `parent`. Returns the node. Raises ErrorNumber::keyTaken,
    /// ErrorNumber::keyNotUnique or the errors of ConfigTree::AddNode. Outside a Step, for example
    /// when a file is read, it empties the undo history.
    Node& add(const std::shared_ptr<clsPLC>& device);
    Node& add(const std::shared_ptr<clsBranch>& branch, Node& parent);
    Node& add(const std::shared_ptr<clsItem>& item, Node& parent);

    /// The same for a record that the user has entered in a dialog: also increments the number of
    /// the next proposed name, and clears `saved`.
    template <typename... Arguments>
    Node& addByHand(Arguments&&... arguments) {
        Node& node = add(std::forward<Arguments>(arguments)...);
        countUp(node.kind());
        saved = false;
        return node;
    }

    /// Sets the fields of an item or a device, or the name of a branch, and clears `saved`. Keys of
    /// the nodes below it change accordingly. Raises the errors of the record's SetByForm, and
    /// ErrorNumber::keyTaken or ErrorNumber::keyNotUnique when a new key of the node or of one
    /// below it is in use.
    void change(Node& item, const ItemFields& fields);
    void change(Node& item, const ItemProperties& properties);
    void change(Node& device, const DeviceFields& fields);
    void renameBranch(Node& branch, const SharedText& name);
    /// The same for the name and the comment of an item.
    void renameItem(Node& item, const SharedText& name);
    void setComment(Node& item, const SharedText& comment);

    /// Raises the errors of renameItem() for the new key. Changes nothing.
    void requireFreeKeys(const Node& node, const SharedText& newKey) const;

    /// The place of a dragged node, with all nodes below it, as last child of another node. Its
    /// keys are free.
    class Placement {
        friend class Document;
        Placement(Node& source, Node& target) : source_(source), target_(target) {}

        Node& source_;
        Node& target_;
        std::vector<SharedText> keys_;  // of the node and all below it, in the order of TreeWalk
    };
    /// Prepares a place for the node itself. Raises ErrorNumber::keyTaken or
    /// ErrorNumber::keyNotUnique when its new key is in use.
    Placement placementOf(Node& source, Node& target) const;
    /// Adds the keys of all nodes below it to the placement. Raises the same errors.
    void placeContents(Placement& placement) const;

    /// Copies the node and all nodes below it, and expands the copy. Branches and items share the
    /// records of their sources, which are added to the registries under the new keys too. The copy
    /// of a device is a bare node without a record. Returns the copy.
    Node& copy(const Placement& placement) { return place(placement, false); }
    /// The same, and removes the source, or detaches it when it is a device.
    Node& move(const Placement& placement) { return place(placement, true); }

    /// Removes the node and all nodes below it, with their records.
    void RemoveSubtree(Node& node) { remove({&node}); }
    /// The same for several nodes. None may be below another.
    void remove(const std::vector<Node*>& nodes);

    /// Outside a Step, it empties the undo history.
    void setSettings(const GlobalSets& settings);

    /// Sorts the node's children alphabetically. This is not an undo step of its own; it is undone
    /// with the last step.
    void sortChildren(Node& node);

    /// Sets the path of the configuration file.
    void setPath(const std::string& path);
    /// Sets `saved`. To be called after the configuration was saved.
    void noteSaved();

    /// Sets each counter to one more than the number of records of its kind.
    void setCountersFromRecords();

    /// Empties the trees, the registries and the history, and returns their memory to the system.
    void clear();

    /// Calls clear(), and adds the root for the file at `path`, visible and selected.
    void startAt(const std::string& path);
    /// The same for a new configuration, with default settings and all counters 0.
    void startNew(const std::string& path);

 private:
    void requireFreeKey(NodeKind kind, const SharedText& key) const;
    void requireFreeKey(const Node& node, const SharedText& key) const;
    template <typename Record>
    Node& addRecordAndNode(const std::shared_ptr<Record>& record, const SharedText& key,
                           const SharedText& name, Node* parent, NodeKind kind);
    void countUp(NodeKind kind);
    void UpdateChildKeys(const Node& node);
    void copyRecord(const Node& source, const SharedText& newKey);
    Node& place(const Placement& placement, bool move);

    DocumentState state() const { return {saved, counters_}; }
    Node* undoOrRedo(Node* (History::*function)(DocumentState&, Contents&));

    Contents contents_;
    Counters counters_;
    History history_;
};
