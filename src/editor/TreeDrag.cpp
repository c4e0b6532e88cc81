#include "editor/TreeDrag.h"

#include <exception>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "model/Keys.h"

bool TreeDrag::TreeView1_MouseDown(int button, int shift, Node* node) {
    if (button != rightButton) return false;
    mSourceNode = node;
    if (node == nullptr) return false;
    mShiftState = shift;
    return true;
}

DropEffect TreeDrag::TreeView1_OLEStartDrag() {
    underWay_.emplace(boxes_);
    return (mShiftState & ctrlMask) != 0 ? DropEffect::copy : DropEffect::move;
}

void TreeDrag::TreeView1_OLEGiveFeedback() { desktop_.setPointer(Pointer::icon); }

void TreeDrag::TreeView1_OLEDragOver(Node* node) { dropHighlight_ = node; }

void TreeDrag::restoreViews() {
    dropHighlight_ = nullptr;
    desktop_.setPointer(Pointer::normal);
}

void TreeDrag::cancelled() {
    underWay_.reset();
    restoreViews();
}

void TreeDrag::TreeView1_OLEDragDrop(DropEffect effect) {
    underWay_.reset();
    try {
        if (Node* target = dropHighlight(); target != nullptr) return drop(*target, effect);
        restoreViews();  // empty space
    } catch (const std::exception&) {
        // Deliberate: no message, and highlight and pointer stay as they are.
    }
}

void TreeDrag::drop(Node& target, DropEffect effect) {
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
    Document::Placement placement = document_.placementOf(source, target);
    // If one node cannot be placed, none is moved or copied.
    if (!reportErrors(desktop_, "CopySubTree", [&] { document_.placeContents(placement); })) {
        return restoreViews();
    }
    const BusyPointer busy(desktop_);
    effect == DropEffect::move ? document_.move(placement) : document_.copy(placement);
    restoreViews();
}

void TreeDrag::refuse(const std::string& text, MessageIcon icon) {
    restoreViews();
    desktop_.showMessage(text, icon);
}
