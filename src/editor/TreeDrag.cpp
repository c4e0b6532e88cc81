#include "editor/TreeDrag.h"

#include <exception>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "model/Generale.h"

bool TreeDrag::TreeView1_MouseDown(int button, int shift, Node* node) {
    if (button != rightButton) return false;
    mSourceNode = node;
    if (node == nullptr) return false;
    mShiftState = shift;
    return true;
}

DropEffect TreeDrag::TreeView1_OLEStartDrag() const {
    return (mShiftState & ctrlMask) != 0 ? DropEffect::copy : DropEffect::move;
}

void TreeDrag::TreeView1_OLEGiveFeedback() { desktop_.setPointer(Pointer::icon); }

void TreeDrag::TreeView1_OLEDragOver(Node* node) { dropHighlight_ = node; }

void TreeDrag::restoreViews() {
    dropHighlight_ = nullptr;
    desktop_.setPointer(Pointer::normal);
}

void TreeDrag::TreeView1_OLEDragDrop(DropEffect effect) {
    try {
        if (Node* target = dropHighlight(); target != nullptr) return drop(*target, effect);
        restoreViews();  // empty space
    } catch (const std::exception&) {
        // Ends silently, with highlight and pointer as they are. Meant.
    }
}

void TreeDrag::drop(Node& target, DropEffect effect) {
    ConfigTree& tree = document_.tree();
    if (mSourceNode.get() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    Node& source = *mSourceNode.get();
    if (target.kind() == NodeKind::item) {
        return refuse("Unable to drag nodes here", MessageIcon::exclamation);
    }
    if (source.parent() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    if (&target == source.parent()) return restoreViews();
    for (const Node* above = &target; above != nullptr; above = above->parent()) {
        if (above == &source) return refuse("Unable to drag nodes here", MessageIcon::exclamation);
    }
    const SharedText key = joinKey(target.key(), source.text());
    if (document_.hasNode(key)) {
        return refuse("Name already in use at this level. Move not allowed", MessageIcon::stop);
    }
    // Of a device only a bare node goes there: its contents leave the tree, its records stay.
    // Meant. What was added afterwards below that bare node has no other place, and goes with it.
    const bool withContents = !source.isDevice();
    std::vector<SharedText> keys{key};
    if (withContents) requireFreeKey(document_, source, key);
    if (withContents && !areFreeBelow(source, keys)) return restoreViews();

    const BusyPointer busy(desktop_);
    const ConfigTree::BulkChange bulk(tree);
    Node& added = tree.AddNode(&target, key, source.text(), source.kind());
    carryRecord(source, key, effect);
    if (withContents) CopySubTree(source, added, keys, effect);
    tree.setExpanded(added, true);
    if (effect == DropEffect::move) withContents ? tree.remove(source) : document_.leave(source);
    restoreViews();
}

void TreeDrag::refuse(const std::string& text, MessageIcon icon) {
    restoreViews();
    desktop_.showMessage(text, icon);
}

/// Found out before anything is changed, so that no part of a branch is left behind. To the new
/// key of the source it adds those of all below it, in the order of a walk.
bool TreeDrag::areFreeBelow(const Node& source, std::vector<SharedText>& newKeys) {
    return reportErrors(desktop_, "CopySubTree", [&] {
        std::vector<SharedText> path{newKeys.front()};  // from the source to the present node
        for (TreeWalk walk(source); const Node* below = walk.next();) {
            path.resize(walk.depth());
            newKeys.push_back(joinKey(path.back(), below->text()));
            requireFreeKey(document_, *below, newKeys.back());
            path.push_back(newKeys.back());
        }
    });
}

void TreeDrag::carryRecord(const Node& source, const SharedText& newKey, DropEffect effect) {
    const auto carry = [&](auto& registry) {
        const auto record = registry.at(source.key());
        registry.add(record, newKey);
        record->sKey = newKey;
        if (effect == DropEffect::move) registry.remove(source.key());
    };
    if (source.kind() == NodeKind::item) carry(document_.items());
    if (source.kind() == NodeKind::branch) carry(document_.branches());
}

void TreeDrag::CopySubTree(const Node& source, Node& destination,
                           const std::vector<SharedText>& newKeys, DropEffect effect) {
    reportErrors(desktop_, "CopySubTree", [&] {
        std::vector<Node*> path{&destination};  // the copies of the present node's parents
        auto key = newKeys.begin();
        for (TreeWalk walk(source); const Node* below = walk.next();) {
            path.resize(walk.depth());
            Node& added =
                document_.tree().AddNode(path.back(), *++key, below->text(), below->kind());
            carryRecord(*below, *key, effect);
            path.push_back(&added);
        }
    });
}
