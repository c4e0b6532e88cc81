#include "model/Document.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <algorithm>
#include <utility>

#include "base/RunTimeError.h"
#include "model/Keys.h"

Node* Document::undoOrRedo(Node* (History::*function)(DocumentState&, Contents&)) {
    DocumentState now = state();
    Node* node = (history_.*function)(now, contents_);
    saved = now.saved;
    counters_ = now.counters;
    return node;
}

std::string Document::currentPath() const {
    if (tree().root() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return tree().root()->text().string();
}

Node& Document::selectedNode() const {
    Node* node = tree().selected();
    if (node == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return *node;
}

const Node* Document::deviceNode(const SharedText& name) const {
    const Node* node = tree().FindNode(name);
    if (node == nullptr || !node->isDevice()) node = detached().FindNode(name);
    return node != nullptr && node->isDevice() ? node : nullptr;
}

const clsPLC& Document::deviceAt(const Node& node) const {
    if (!node.isDevice()) throw RunTimeError(ErrorNumber::invalidCall);
    return devices().at(node.key());
}

Node& Document::itemNodeAt(const SharedText& key) const {
    Node* node = tree().FindNode(key);
    if (node == nullptr || node->kind() != NodeKind::item) {
        throw RunTimeError(ErrorNumber::invalidCall);
    }
    return *node;
}

std::shared_ptr<const clsItem> Document::itemAt(const Node& node) const {
    auto record = items().share(node.key());
    if (record->sKey == node.key() && record->sName == node.text()) return record;
    auto here = std::make_shared<clsItem>(*record);
    here->sKey = node.key();
    here->sName = node.text();
    return here;
}

/// Raises the error that adding a record of that kind and its node would raise when the key is in
/// use: ErrorNumber::keyTaken when a record has it, ErrorNumber::keyNotUnique when a node has it.
void Document::requireFreeKey(NodeKind kind, const SharedText& key) const {
    const bool isTaken = (kind == NodeKind::plc && devices().find(key) != nullptr) ||
                         (kind == NodeKind::branch && branches().find(key) != nullptr) ||
                         (kind == NodeKind::item && items().find(key) != nullptr);
    if (isTaken) throw RunTimeError(ErrorNumber::keyTaken);
    if (hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
}

/// The same for a copy of `node`. A dropped device has no record.
void Document::requireFreeKey(const Node& node, const SharedText& key) const {
    requireFreeKey(node.isDroppedDevice() ? NodeKind::config : node.kind(), key);
}

void Document::requireFreeKeys(const Node& node, const SharedText& newKey) const {
    const auto require = [&](const Node& each, const SharedText& key) {
        if (key == each.key()) return;
        // When only the case changes, the registry finds the record's own entry: no conflict.
        if (!equalIgnoringCase(key, each.key())) return requireFreeKey(each, key);
        if (hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
    };
    require(node, newKey);
    std::vector<SharedText> path{newKey};  // the new keys from `node` down to `below`
    for (TreeWalk walk(node); const Node* below = walk.next();) {
        path.resize(walk.depth());
        path.push_back(joinKey(path.back(), below->text()));
        require(*below, path.back());
    }
}

template <typename Record>
Node& Document::addRecordAndNode(const std::shared_ptr<Record>& record, const SharedText& key,
                                 const SharedText& name, Node* parent, NodeKind kind) {
    Registry<Record>& registry = contents_.registry<Record>();
    registry.add(record, key);
    try {
        if (detached().FindNode(key) != nullptr) throw RunTimeError(ErrorNumber::keyNotUnique);
        Node& node = contents_.tree.AddNode(parent, key, name, kind);
        if (!history_.isOpen()) {
            if (history_.bytes() > 0) history_.clear();
            return node;
        }
        history_.recordAdded(node);
        history_.addSubject(node);
        return node;
    } catch (const RunTimeError&) {
        // A record without a node would never be found again.
        registry.take(key);
        throw;
    }
}

Node& Document::add(const std::shared_ptr<clsPLC>& device) {
    return addRecordAndNode(device, device->sKey(), device->getName(), tree().root(),
                            NodeKind::plc);
}

Node& Document::add(const std::shared_ptr<clsBranch>& branch, Node& parent) {
    return addRecordAndNode(branch, branch->sKey, branch->sName, &parent, NodeKind::branch);
}

Node& Document::add(const std::shared_ptr<clsItem>& item, Node& parent) {
    return addRecordAndNode(item, item->sKey, item->sName, &parent, NodeKind::item);
}

void Document::countUp(NodeKind kind) {
    if (kind == NodeKind::plc) ++counters_.devices;
    if (kind == NodeKind::branch) ++counters_.branches;
    if (kind == NodeKind::item) ++counters_.items;
}

/// Changes the record in place: the editor clipboard and dragged copies share it.
void Document::change(Node& item, const ItemFields& fields) {
    const SharedText key = BuildNodeKey(fields.txtItemName, &item, true);
    requireFreeKeys(item, key);
    clsItem& record = *contents_.items.recordAt(item.key());
    clsItem now = record;
    now.SetByForm(fields, &item, true);
    const Step step(*this, "Change");
    history_.record<ItemChange>(record, now);
    tree().recordsChanged();
    history_.current<RenameChange>().make(contents_, item, key, now.sName);
    history_.addSubject(item);
    saved = false;
}

void Document::change(Node& item, const ItemProperties& properties) {
    clsItem& record = *contents_.items.recordAt(item.key());
    clsItem now = record;
    if (properties.dataType) now.sDataType = *properties.dataType;
    if (properties.accessRight) now.sAccessRight = *properties.accessRight;
    if (properties.isRead) now.bFlag = *properties.isRead;
    if (properties.elements) now.nElements = *properties.elements;
    const Step step(*this, "Change");
    history_.record<ItemChange>(record, now);
    tree().recordsChanged();
    history_.addSubject(item);
    saved = false;
}

void Document::change(Node& device, const DeviceFields& fields) {
    auto record = std::make_shared<clsPLC>();
    record->SetByForm(fields);
    requireFreeKeys(device, record->sKey());
    const Step step(*this, "Change");
    history_.current<RenameChange>().make(contents_, device, std::move(record));
    UpdateChildKeys(device);
    history_.addSubject(device);
    saved = false;
}

void Document::renameBranch(Node& branch, const SharedText& name) {
    auto record = std::make_shared<clsBranch>();
    record->sName = name;
    record->sKey = BuildNodeKey(name, &branch, true);
    requireFreeKeys(branch, record->sKey);
    const Step step(*this, "Rename");
    history_.current<RenameChange>().make(contents_, branch, std::move(record));
    UpdateChildKeys(branch);
    history_.addSubject(branch);
    saved = false;
}

void Document::renameItem(Node& item, const SharedText& name) {
    const SharedText key = BuildNodeKey(name, &item, true);
    requireFreeKeys(item, key);
    const Step step(*this, "Rename");
    history_.current<RenameChange>().make(contents_, item, key, name);
    history_.addSubject(item);
    saved = false;
}

void Document::setComment(Node& item, const SharedText& comment) {
    SharedText& text = contents_.items.recordAt(item.key())->sComment;
    const Step step(*this, "Change");
    history_.current<RecordTextChange>().make(text, comment);
    tree().recordsChanged();
    history_.addSubject(item);
    saved = false;
}

/// Called after the key of `node` has changed: updates the keys of all nodes below it and of their
/// records. The entries move to the end of their registries.
void Document::UpdateChildKeys(const Node& node) {
    RenameChange& change = history_.current<RenameChange>();
    for (TreeWalk walk(node); Node* child = walk.next();)
        change.make(contents_, *child, joinKey(child->parent()->key(), child->text()));
}

Document::Placement Document::placementOf(Node& source, Node& target) const {
    Placement placement(source, target);
    const SharedText key = joinKey(target.key(), source.text());
    if (!source.isDevice()) requireFreeKey(source, key);
    placement.keys_.push_back(key);
    return placement;
}

void Document::placeContents(Placement& placement) const {
    // Deliberate: dropping a device makes only a bare node. The contents of the device are
    // detached, and their records stay. A dropped device moves with its contents: they have no
    // other place.
    if (placement.source_.isDevice()) return;
    std::vector<SharedText> path = placement.keys_;  // from the source down to `below`
    for (TreeWalk walk(placement.source_); const Node* below = walk.next();) {
        path.resize(walk.depth());
        placement.keys_.push_back(joinKey(path.back(), below->text()));
        requireFreeKey(*below, placement.keys_.back());
        path.push_back(placement.keys_.back());
    }
}

Node& Document::place(const Placement& placement, bool move) {
    Node& source = placement.source_;
    const bool withContents = !source.isDevice();
    const Step step(*this, move ? "Move" : "Copy");
    const ConfigTree::BulkChange bulk(tree());
    auto key = placement.keys_.begin();
    std::vector<std::pair<Node*, Node*>> moved;  // old and new nodes that have references
    const auto copyNode = [&](Node& node, Node& parent) -> Node& {
        Node& added = contents_.tree.AddNode(&parent, *key, node.text(), node.kind());
        copyRecord(node, *key++);
        if (move && withContents && ConfigTree::isReferredTo(node))
            moved.emplace_back(&node, &added);
        return added;
    };
    Node& added = copyNode(source, placement.target_);
    std::vector<Node*> path{&added};  // the copies of the parents of `below`
    if (withContents) {
        for (TreeWalk walk(source); Node* below = walk.next();) {
            path.resize(walk.depth());
            path.push_back(&copyNode(*below, *path.back()));
        }
    }
    history_.record<PresenceChange>(added);
    ConfigTree::setExpanded(added, true);
    history_.addSubject(added, move ? &source : nullptr);
    if (!move) return added;
    for (const auto& [from, to] : moved)
        history_.current<RedirectChange>().make(contents_, *from, *to);
    if (withContents) {
        history_.record<PresenceChange>(contents_, std::vector<Node*>{&source});
    } else {
        history_.record<DetachChange>(contents_, source);
    }
    return added;
}

/// Deliberate: a copy gets no record of its own. The record of the source is added under the new
/// key as well, and its sKey becomes the new key.
void Document::copyRecord(const Node& source, const SharedText& newKey) {
    const auto addAgain = [&](auto& registry) {
        const auto& record = registry.recordAt(source.key());
        registry.add(record, newKey);
        history_.current<RecordTextChange>().make(record->sKey, newKey);
    };
    if (source.kind() == NodeKind::item) addAgain(contents_.items);
    if (source.kind() == NodeKind::branch) addAgain(contents_.branches);
}

void Document::remove(const std::vector<Node*>& nodes) {
    if (nodes.empty()) return;
    const Step step(*this, "Delete");
    history_.record<PresenceChange>(contents_, nodes);
    for (Node* node : nodes)
        history_.addSubject(*node);
}

void Document::setSettings(const GlobalSets& settings) {
    GlobalSets before = std::exchange(contents_.settings, settings);
    tree().recordsChanged();
    if (history_.isOpen()) {
        history_.record<SettingsChange>(std::move(before));
    } else {
        history_.clear();
    }
}

void Document::sortChildren(Node& node) {
    std::vector<Node*> before;
    if (contents_.tree.sortChildren(node, before)) history_.recordOrder(node, std::move(before));
}

void Document::setPath(const std::string& path) {
    contents_.tree.setText(contents_.tree.nodeAt(rootKey), path);
}

void Document::noteSaved() {
    saved = true;
    history_.noteSaved();
}

void Document::setCountersFromRecords() {
    counters_.devices = static_cast<int>(devices().count()) + 1;
    counters_.branches = static_cast<int>(branches().count()) + 1;
    counters_.items = static_cast<int>(items().count()) + 1;
}

void Document::clear() {
    history_.clear();
    contents_.tree.clear();
    contents_.detached.clear();
    contents_.devices.clear();
    contents_.items.clear();
    contents_.branches.clear();
#ifdef __GLIBC__
    // glibc keeps freed memory that is below the last block in use: here, a large configuration.
    ::malloc_trim(0);
#endif
}

void Document::startAt(const std::string& path) {
    clear();
    contents_.detached.AddNode("", rootKey, "", NodeKind::config);
    Node& root = contents_.tree.AddNode("", rootKey, path, NodeKind::config);
    tree().ensureVisible(root);
    tree().select(&root);
}

void Document::startNew(const std::string& path) {
    startAt(path);
    contents_.settings.SetDefaults();
    counters_ = {};
}
