#include "model/Document.h"

#include <utility>

#include "model/Generale.h"
#include "model/RunTimeError.h"

void Document::setCountersFromRecords() {
    deviceCounter = static_cast<int>(devices_.count()) + 1;
    branchCounter = static_cast<int>(branches_.count()) + 1;
    itemCounter = static_cast<int>(items_.count()) + 1;
}

const std::string& Document::currentPath() const {
    if (tree_.root() == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return tree_.root()->text();
}

namespace {

template <typename Record>
Node& enterRecord(ConfigTree& tree, Registry<Record>& registry,
                  const std::shared_ptr<Record>& record, const std::string& key,
                  const std::string& name, std::string_view parentKey, NodeKind kind) {
    registry.add(record, key);
    try {
        return tree.AddNode(parentKey, key, name, kind);
    } catch (const RunTimeError&) {
        // A record that no node shows could never be reached again, but would be saved.
        registry.remove(key);
        throw;
    }
}

}  // namespace

Node& Document::enter(const std::shared_ptr<clsPLC>& device) {
    return enterRecord(tree_, devices_, device, device->sKey(), device->getName(), rootKey,
                       NodeKind::plc);
}

Node& Document::enter(const std::shared_ptr<clsBranch>& branch, const std::string& parentKey) {
    return enterRecord(tree_, branches_, branch, branch->sKey, branch->sName, parentKey,
                       NodeKind::branch);
}

Node& Document::enter(const std::shared_ptr<clsItem>& item, const std::string& parentKey) {
    return enterRecord(tree_, items_, item, item->sKey, item->sName, parentKey, NodeKind::item);
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
    tree_.clear();
    devices_.clear();
    items_.clear();
    branches_.clear();
}

void Document::startAt(std::string path) {
    clear();
    Node& root = tree_.AddNode("", rootKey, std::move(path), NodeKind::config);
    tree_.ensureVisible(root);
    tree_.select(&root);
}
