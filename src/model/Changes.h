// What a change of a configuration has done, kept so that it can be taken back and made again.
//
// Each kind is made with its change. toggle() then switches between the state before the change and
// the state after it: `back` says which way. Changes are taken back in the reverse order, so each
// finds the configuration as it left it. Only the order of siblings may differ: a click on a node
// sorts its children.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "model/Contents.h"

/// The places at which changes may put something back. They stay free when trees and registries are
/// compacted.
struct ReservedPlaces {
    std::vector<ConfigTree::Cut*> tree, detached;
    std::vector<std::uint32_t*> devices, branches, items;

    void compact(Contents& contents);
};

/// Nodes, with all below them and their records, were added or removed.
class PresenceChange {
 public:
    /// The node was added.
    explicit PresenceChange(Node& added) : tops_{&added} {}
    /// Removes the nodes.
    PresenceChange(Contents& contents, std::vector<Node*> nodes);

    /// One more node was added. False when this is no change that adds.
    bool addOneMore(Node& added);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    void takeOut(Contents& contents);
    void takeRecord(Contents& contents, const Node& node);

    std::vector<Node*> tops_;
    bool removes_ = false;
    ConfigTree::Cut cut_;  // while they are out, and so their records
    std::vector<Registry<clsPLC>::Taken> devices_;
    std::vector<Registry<clsBranch>::Taken> branches_;
    std::vector<Registry<clsItem>::Taken> items_;
    std::size_t textBytes_ = 0;  // of the longest texts that are out
};

/// Nodes got other keys and names, and their records with them.
class RenameChange {
 public:
    /// Gives the node and its record that key, and moves the record's entry to the end of its
    /// registry. The key must be free.
    void make(Contents& contents, Node& node, const SharedText& key);
    /// The same, and that name, for an item.
    void make(Contents& contents, Node& item, const SharedText& key, const SharedText& name);
    /// The same for a device or a branch, whose record is replaced.
    void make(Contents& contents, Node& node, std::shared_ptr<clsPLC> record);
    void make(Contents& contents, Node& node, std::shared_ptr<clsBranch> record);

    /// How many nodes got other names.
    std::size_t texts() const { return texts_; }

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    void setText(Contents& contents, Node& node, const SharedText& name);
    /// What the node and its record have in the other of the two states.
    struct Entry {
        Node* node = nullptr;
        SharedText key;
        SharedText text;
        std::shared_ptr<void> record;  // null for a node without one
        std::uint32_t place = 0;       // of the record's entry
        // Of a record that is the same in both states.
        SharedText recordKey;
        SharedText recordName;
    };
    template <typename Record>
    Record& enterAnew(Contents& contents, Node& node, const SharedText& key,
                      std::shared_ptr<Record> other = nullptr);
    template <typename Record>
    static void toggleEntry(Contents& contents, Entry& entry);
    static void toggleEntry(Contents& contents, Entry& entry);

    std::deque<Entry> entries_;
    std::size_t texts_ = 0;
};

/// Texts of records are others.
class RecordTextChange {
 public:
    void make(SharedText& text, SharedText now);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    std::vector<std::pair<SharedText*, SharedText>> others_;
};

/// All fields of an item are others.
class ItemChange {
 public:
    ItemChange(clsItem& item, const clsItem& now);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    clsItem* item_;
    std::unique_ptr<clsItem> other_;
};

/// The children of a node stand in another order.
class OrderChange {
 public:
    OrderChange(Node& node, std::vector<Node*> before) : node_(&node), other_(std::move(before)) {}

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    Node* node_;
    std::vector<Node*> other_;
};

/// A dragged device was detached.
class DetachChange {
 public:
    /// Detaches it.
    DetachChange(Contents& contents, Node& device);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;
    void collect(ReservedPlaces& places);

 private:
    Node* device_;
    bool isDetached_ = false;
    ConfigTree::Cut there_;  // where it was in the other tree
};

/// Nodes were made anew in another place, and what referred to the old ones follows.
class RedirectChange {
 public:
    void make(Contents& contents, Node& from, Node& to);

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    std::vector<std::pair<Node*, Node*>> nodes_;
};

/// The global settings are others.
class SettingsChange {
 public:
    explicit SettingsChange(GlobalSets before) : other_(std::move(before)) {}

    void toggle(Contents& contents, bool back);
    std::size_t bytes() const;

 private:
    GlobalSets other_;
};

/// Any of these.
using Change = std::variant<PresenceChange, RenameChange, RecordTextChange, ItemChange, OrderChange,
                            DetachChange, RedirectChange, SettingsChange>;
