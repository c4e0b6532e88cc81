#include "model/Document.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "base/RunTimeError.h"

void Document::setCountersFromRecords() {
    deviceCounter = static_cast<int>(devices_.count()) + 1;
    branchCounter = static_cast<int>(branches_.count()) + 1;
    itemCounter = static_cast<int>(items_.count()) + 1;
}

std::string Document::currentPath() const {
    if (tree_.root() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return tree_.root()->text().string();
}

namespace {

template <typename Record>
Node& enterRecord(Document& document, Registry<Record>& registry,
                  const std::shared_ptr<Record>& record, const SharedText& key,
                  const SharedText& name, Node* parent, NodeKind kind) {
    registry.add(record, key);
    try {
        if (document.left().FindNode(key) != nullptr) throw RunTimeError(ErrorNumber::keyNotUnique);
        return document.tree().AddNode(parent, key, name, kind);
    } catch (const RunTimeError&) {
        // A record that no node shows could never be reached again.
        registry.remove(key);
        throw;
    }
}

}  // namespace

Node& Document::enter(const std::shared_ptr<clsPLC>& device) {
    return enterRecord(*this, devices_, device, device->sKey(), device->getName(), tree_.root(),
                       NodeKind::plc);
}

Node& Document::enter(const std::shared_ptr<clsBranch>& branch, Node& parent) {
    return enterRecord(*this, branches_, branch, branch->sKey, branch->sName, &parent,
                       NodeKind::branch);
}

Node& Document::enter(const std::shared_ptr<clsItem>& item, Node& parent) {
    return enterRecord(*this, items_, item, item->sKey, item->sName, &parent, NodeKind::item);
}

const Node* Document::deviceNode(const SharedText& name) const {
    const Node* node = tree_.FindNode(name);
    if (node == nullptr || !node->isDevice()) node = left_.FindNode(name);
    return node != nullptr && node->isDevice() ? node : nullptr;
}

const std::shared_ptr<clsPLC>& Document::deviceAt(const Node& node) const {
    if (!node.isDevice()) throw RunTimeError(ErrorNumber::invalidCall);
    return devices_.at(node.key());
}

const std::shared_ptr<clsItem>& Document::itemUnder(const SharedText& key) const {
    const Node* node = tree_.FindNode(key);
    if (node == nullptr || node->kind() != NodeKind::item) {
        throw RunTimeError(ErrorNumber::invalidCall);
    }
    return items_.at(key);
}

std::shared_ptr<const clsItem> Document::itemAt(const Node& node) const {
    const auto& record = items_.at(node.key());
    if (record->sKey == node.key() && record->sName == node.text()) return record;
    auto here = std::make_shared<clsItem>(*record);
    here->sKey = node.key();
    here->sName = node.text();
    return here;
}

void Document::clear() {
    [[maybe_unused]] const bool heldItems = items_.count() > 0;
    tree_.clear();
    left_.clear();
    devices_.clear();
    items_.clear();
    branches_.clear();
#ifdef __GLIBC__
    // Its heap keeps what is freed below the last block in use: all of a large configuration.
    if (heldItems) ::malloc_trim(0);
#endif
}

void Document::startAt(const std::string& path) {
    clear();
    left_.AddNode("", rootKey, "", NodeKind::config);
    Node& root = tree_.AddNode("", rootKey, path, NodeKind::config);
    tree_.ensureVisible(root);
    tree_.select(&root);
}
