#include "editor/Deletion.h"

#include <string>
#include <unordered_set>
#include <vector>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"

void Deletion::mnuDelete_Click() {
    reportErrors(desktop_, "mnuDelete_Click", [&] {
        switch (active_) {
            case ActiveControl::list: return deleteRows();
            case ActiveControl::tree: return deleteNode();
            case ActiveControl::none: return;
        }
    });
}

namespace {

/// Returns the parent of a node. Raises ErrorNumber::objectNotSet for the root.
Node& parentOf(const Node& node) {
    if (node.parent() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return *node.parent();
}

}  // namespace

void Deletion::deleteRows() {
    if (!desktop_.askYesNo("Are you sure you want to delete the selected items ?", Answer::no)) {
        return;
    }
    // Deliberate: shows the parent of the selected node, not the node itself. Only the root has no
    // parent.
    Node& selected = document_.selectedNode();
    Node& toShow = selected.parent() == nullptr ? selected : *selected.parent();
    removeSelectedRows();
    click_(toShow);
}

/// Stops with an error at a row that is not an item, or whose node is gone: the rows before it are
/// deleted, the others stay. Raises ErrorNumber::invalidCall or ErrorNumber::elementNotFound.
void Deletion::removeSelectedRows() {
    const BusyPointer busy(desktop_);
    std::vector<Node*> gone;
    std::unordered_set<const Node*> known;
    const auto remove = [&] { document_.remove(gone); };
    try {
        for (const auto& row : list_.rows()) {
            if (!row.selected) continue;
            // The list may be out of date: another node may have the key now.
            Node& node = document_.tree().nodeAt(row.key);
            if (node.kind() != NodeKind::item) throw RunTimeError(ErrorNumber::invalidCall);
            // Two rows have one key after one node was dragged away and another got its name.
            if (!known.insert(&node).second) throw RunTimeError(ErrorNumber::elementNotFound);
            gone.push_back(&node);
        }
    } catch (...) {
        remove();
        throw;
    }
    remove();
}

void Deletion::deleteNode() {
    const ConfigTree::Reference node(document_.tree(), &document_.selectedNode());
    const std::string question = "Are you sure you want to delete " + shortened(node.text());
    switch (node.node().kind()) {
        case NodeKind::plc:
        case NodeKind::branch:
            if (desktop_.askYesNo(question + " and all its items?", Answer::no)) {
                remove(node.node());
            }
            return;
        case NodeKind::item: return deleteItem(node, question + " ?");
        case NodeKind::config: return;
    }
}

void Deletion::deleteItem(const ConfigTree::Reference& item, const std::string& question) {
    if (desktop_.askYesNo(question, Answer::no)) remove(item.node());
    // Deliberate: also after the answer No.
    click_(parentOf(document_.selectedNode()));
}

void Deletion::remove(Node& node) {
    const BusyPointer busy(desktop_);
    document_.RemoveSubtree(node);
}
