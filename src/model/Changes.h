// The kinds of changes of a configuration, with what is needed to undo and redo them.
//
// Constructing a change, or make(), carries it out. toggle() then switches between the states
// before and after it: `back` is true to undo, false to redo.
//
//     RenameChange change;
//     change.make(contents, node, "Plant.Floor2");
//     change.toggle(contents, true);   // undo
//     change.toggle(contents, false);  // redo
//
// bytes() returns the memory that the change takes, roughly. collect() adds the places at which the
// change may put something back. Changes are undone in reverse order, so each finds the
// configuration as it left it. Only the order of siblings may differ: a click on a node sorts its
// children.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "model/Contents.h"

/// The places at which changes may put something back. compact() removes all other free places of
/// the trees and registries.
struct ReservedPlaces {
    std::vector<ConfigTree::RemovedNodes*> tree, detached;
    std::vector<std::uint32_t*> devices, branches, items;

    void compact(Contents& contents);
};

/// Adds or removes nodes, with all nodes below them and their records.
class PresenceChange {
 public:
    /// Records that the node was added.
    explicit PresenceChange(Node& added) : tops_{&added} {}
    /// Removes the nodes.
    PresenceChange(Contents& contents, std::vector<Node*> nodes);

    /// Records that one more node was added. Returns false when this change removes nodes.
    bool addOneMore(Node& added);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    void takeOut(Contents& contents);
    void takeRecord(Contents& contents, const Node& node);

    std::vector<Node*> tops_;
    bool removes_ = false;
    ConfigTree::RemovedNodes removed_;  // empty while the nodes are in the tree
    std::vector<Registry<clsPLC>::Taken> devices_;
    std::vector<Registry<clsBranch>::Taken> branches_;
    std::vector<Registry<clsItem>::Taken> items_;
    std::size_t textBytes_ = 0;  // of the longest removed texts
};

/// Changes keys and names of nodes and of their records.
class RenameChange {
 public:
    /// Sets the key of the node and of its record, and moves the record's entry to the end of its
    /// registry. The key must be free.
    void make(Contents& contents, Node& node, const SharedText& key);
    /// Sets key and name of an item.
    void make(Contents& contents, Node& item, const SharedText& key, const SharedText& name);
    /// Replaces the record of a device or a branch; the node gets its key and its name.
    void make(Contents& contents, Node& node, std::shared_ptr<clsPLC> record);
    void make(Contents& contents, Node& node, std::shared_ptr<clsBranch> record);

    /// The number of nodes whose names were set.
    std::size_t texts() const { return texts_; }

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    void setText(Contents& contents, Node& node, const SharedText& name);
    /// The values of a node and its record in the other one of the two states.
    struct Entry {
        Node* node = nullptr;
        SharedText key;
        SharedText text;
        std::shared_ptr<void> record;  // null for a node without one
        std::uint32_t place = 0;       // of the record's entry in the registry
        // Key and name of a record that is the same object in both states.
        SharedText recordKey;
        SharedText recordName;
    };
    template <typename Record>
    Record& replaceEntry(Contents& contents, Node& node, const SharedText& key,
                         std::shared_ptr<Record> other = nullptr);
    template <typename Record>
    static void toggleEntry(Contents& contents, Entry& entry);
    static void toggleEntry(Contents& contents, Entry& entry);

    std::deque<Entry> entries_;
    std::size_t texts_ = 0;
};

/// Changes texts of records.
class RecordTextChange {
 public:
    /// Sets a text of a record.
    void make(SharedText& text, SharedText now);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    std::vector<std::pair<SharedText*, SharedText>> others_;
};

/// Changes all fields of an item.
class ItemChange {
 public:
    /// Sets all fields of `item` to those of `now`.
    ItemChange(clsItem& item, const clsItem& now);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    clsItem* item_;
    std::unique_ptr<clsItem> other_;
};

/// Changes the order of the children of a node.
class OrderChange {
 public:
    /// Records that the children of `node` were sorted; `before` is their former order.
    OrderChange(Node& node, std::vector<Node*> before) : node_(&node), other_(std::move(before)) {}

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    Node* node_;
    std::vector<Node*> other_;
};

/// Detaches a dragged device: moves it to the detached tree.
class DetachChange {
 public:
    DetachChange(Contents& contents, Node& device);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    Node* device_;
    bool isDetached_ = false;
    ConfigTree::RemovedNodes formerPlaces_;  // in the tree in which the device is not
};

/// Redirects references from moved nodes to the nodes that replace them.
class RedirectChange {
 public:
    /// `to` replaces `from`.
    void make(Contents& contents, Node& from, Node& to);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    std::vector<std::pair<Node*, Node*>> nodes_;
};

/// Changes the global settings.
class SettingsChange {
 public:
    /// Records that the settings were changed; `before` are the former ones.
    explicit SettingsChange(GlobalSets before) : other_(std::move(before)) {}

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    GlobalSets other_;
};

/// A change of any kind.
using Change = std::variant<PresenceChange, RenameChange, RecordTextChange, ItemChange, OrderChange,
                            DetachChange, RedirectChange, SettingsChange>;
