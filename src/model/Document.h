// The open configuration and its state.
#pragma once

#include <memory>
#include <string>

#include "model/ConfigTree.h"
#include "model/GlobalSets.h"
#include "model/Registry.h"
#include "model/clsBranch.h"
#include "model/clsItem.h"
#include "model/clsPLC.h"

/// The one document of the editor: the tree (structure and order), the three registries of
/// records (data), the global settings and the state that commands share.
class Document {
 public:
    /// The key of the root node, under which the devices stand.
    static constexpr const char* rootKey = "config";

    ConfigTree& tree() { return tree_; }
    const ConfigTree& tree() const { return tree_; }
    /// What dragged devices left: their nodes with all below them, under a root of its own. They
    /// are shown no more, but their records stay and are saved. No key stands in both trees.
    const ConfigTree& left() const { return left_; }
    Registry<clsPLC>& devices() { return devices_; }
    const Registry<clsPLC>& devices() const { return devices_; }
    Registry<clsItem>& items() { return items_; }
    const Registry<clsItem>& items() const { return items_; }
    Registry<clsBranch>& branches() { return branches_; }
    const Registry<clsBranch>& branches() const { return branches_; }
    GlobalSets& settings() { return settings_; }
    const GlobalSets& settings() const { return settings_; }

    /// A configuration, new or loaded, is shown.
    bool open = false;
    /// It has no unsaved change.
    bool saved = false;

    /// What a dialog and the command that shows it tell each other: `modify` is set for changing
    /// the selected node instead of adding one, `confirmed` by the dialog once it has stored a new
    /// record. While an item is changed, item keys are built from the selected node's parent.
    struct DialogFlags {
        bool modify = false;
        bool confirmed = false;
    };
    DialogFlags deviceDialog;
    DialogFlags branchDialog;
    DialogFlags itemDialog;

    /// They number default names. Wider than the 16 bits that this state has elsewhere: a
    /// configuration may hold all 65,536 group addresses, and the next name needs a number too.
    int deviceCounter = 0;
    int branchCounter = 0;
    int itemCounter = 0;

    /// One more than the number of records of each kind.
    void setCountersFromRecords();

    /// Path of the configuration file: the root's text. Raises ErrorNumber::objectNotSet when
    /// there is no root.
    std::string currentPath() const;

    /// Enters a record in its registry and appends its node in the tree: a device below the root,
    /// a branch or an item below `parent`. Raises ErrorNumber::keyTaken, ErrorNumber::keyNotUnique
    /// or the errors of ConfigTree::AddNode; then nothing has changed.
    Node& enter(const std::shared_ptr<clsPLC>& device);
    Node& enter(const std::shared_ptr<clsBranch>& branch, Node& parent);
    Node& enter(const std::shared_ptr<clsItem>& item, Node& parent);

    /// The node of a device of that name, in the tree or among what dragged devices left; null
    /// when there is none.
    const Node* deviceNode(const SharedText& name) const;

    /// The device of a node. Raises ErrorNumber::invalidCall for a node that is none's, whatever
    /// device has its key.
    const std::shared_ptr<clsPLC>& deviceAt(const Node& node) const;

    /// The record of the item node with that key. Raises ErrorNumber::invalidCall for the key of
    /// another node, or of none: a row of the list may be out of date.
    const std::shared_ptr<clsItem>& itemUnder(const SharedText& key) const;

    /// The item as it stands at its node. A copy made by dragging shares the record of its
    /// source, which bears the key and the name of one of the two; here each has its own. Raises
    /// ErrorNumber::invalidCall for a node without a record.
    std::shared_ptr<const clsItem> itemAt(const Node& node) const;

    /// True when a node, shown or not, has the key.
    bool hasNode(const SharedText& key) const {
        return tree_.FindNode(key) != nullptr || left_.FindNode(key) != nullptr;
    }

    /// Takes a device's node with all below it out of the tree; all their records stay.
    void leave(Node& device) { tree_.moveTo(left_, device); }

    /// Empties the tree and the registries, and gives their memory back to the system.
    void clear();

    /// Empties the tree and the registries and adds the root for the file at `path`, visible and
    /// selected.
    void startAt(const std::string& path);

 private:
    ConfigTree tree_;
    ConfigTree left_;
    Registry<clsPLC> devices_;
    Registry<clsItem> items_;
    Registry<clsBranch> branches_;
    GlobalSets settings_;
};
