#include "model/Generale.h"

#include <vector>

#include "base/RunTimeError.h"
#include "base/Text.h"
#include "model/Document.h"

Node& selectedNode(Document& document) {
    Node* node = document.tree().selected();
    if (node == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return *node;
}

namespace {

bool hasRecord(const Document& document, NodeKind kind, const SharedText& key) {
    switch (kind) {
        case NodeKind::plc: return document.devices().find(key) != nullptr;
        case NodeKind::branch: return document.branches().find(key) != nullptr;
        case NodeKind::item: return document.items().find(key) != nullptr;
        case NodeKind::config: return false;
    }
    return false;
}

}  // namespace

void requireFreeKey(const Document& document, NodeKind kind, const SharedText& key) {
    if (hasRecord(document, kind, key)) throw RunTimeError(ErrorNumber::keyTaken);
    if (document.hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
}

void requireFreeKey(const Document& document, const Node& node, const SharedText& key) {
    const bool hasRecord = !node.isDroppedDevice();
    requireFreeKey(document, hasRecord ? node.kind() : NodeKind::config, key);
}

void requireFreeKeys(const Document& document, const Node& node, const SharedText& newKey) {
    const auto require = [&](const Node& each, const SharedText& key) {
        if (key == each.key()) return;
        // A record's own entry is in nobody's way when only its key's case changes.
        if (!equalIgnoringCase(key, each.key())) return requireFreeKey(document, each, key);
        if (document.hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
    };
    require(node, newKey);
    std::vector<SharedText> path{newKey};  // the new keys from the node down to the present one
    for (TreeWalk walk(node); const Node* below = walk.next();) {
        path.resize(walk.depth());
        path.push_back(joinKey(path.back(), below->text()));
        require(*below, path.back());
    }
}

void UpdateChildKeys(Document& document, const Node& node) {
    for (TreeWalk walk(node); Node* child = walk.next();) {
        const SharedText newKey = joinKey(child->parent()->key(), child->text());
        const auto setKey = [&](auto& record) { record.sKey = newKey; };
        if (child->kind() == NodeKind::item) {
            document.items().rekey(child->key(), newKey, setKey);
        } else if (child->kind() == NodeKind::branch) {
            document.branches().rekey(child->key(), newKey, setKey);
        }
        document.tree().setKey(*child, newKey);
    }
}

void RemoveSubtree(Document& document, Node& node) {
    const auto removeRecord = [&](const Node& each) {
        switch (each.kind()) {
            case NodeKind::plc:
                if (each.isDevice()) document.devices().remove(each.key());
                return;
            case NodeKind::branch: return document.branches().remove(each.key());
            case NodeKind::item: return document.items().remove(each.key());
            case NodeKind::config: return;
        }
    };
    removeRecord(node);
    for (TreeWalk walk(node); const Node* below = walk.next();)
        removeRecord(*below);
    document.tree().remove(node);
}
