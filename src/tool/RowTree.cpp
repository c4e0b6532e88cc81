#include "tool/RowTree.h"

#include "model/Keys.h"

RowTree::RowTree(const Table& table, const Document& base, std::vector<Finding>& faults)
    : table_(table), base_(base), rows_(table.rows()) {
    containers_.reserve(table.rows() / 8);
    items_.reserve(table.rows());
    for (std::size_t row = 0; row < table.rows(); ++row)
        add(row, faults);
    requireParents(faults);
}

void RowTree::add(std::size_t row, std::vector<Finding>& faults) {
    const auto fault = [&](Column column, std::string text) {
        faults.push_back({.line = table_.lineOf(row),
                          .place = std::string(nameOf(column)),
                          .text = std::move(text)});
    };
    const std::string_view path = table_.at(row, Column::path);
    const auto end = cutPath(path);
    if (!end) return fault(Column::path, "no path: \"" + std::string(path) + "\"");
    Row& place = rows_[row];
    place.parentPath = end->parent;
    place.name = end->name;
    const auto kind = kindOf(row, place);
    if (!kind) return fault(Column::kind, "not settings, device, branch or item");
    place.kind = *kind;
    const bool isTop = place.parentPath.empty();
    if (path.empty() != (*kind == NodeKind::config)) {
        return fault(Column::path, path.empty() ? "empty" : "the settings have no path");
    }
    if (isTop != (*kind <= NodeKind::plc)) {
        return fault(Column::kind, isTop ? "below no device" : "a device stands below nothing");
    }
    auto& known = *kind == NodeKind::item ? items_ : containers_;
    const auto [first, added] = known.emplace(path, row);
    if (!added) {
        return fault(Column::path, "also in line " + std::to_string(table_.lineOf(first->second)));
    }
    place.base = baseOf(path, place, *kind);
    place.isValid = true;
}

/// The kind in the table. If it is empty, the kind of the node with this path in the base, or else
/// a guess from the path and the address.
std::optional<NodeKind> RowTree::kindOf(std::size_t row, const Row& place) const {
    const std::string_view named = table_.at(row, Column::kind);
    if (!named.empty()) return kindNamed(named);
    const std::string_view path = table_.at(row, Column::path);
    if (path.empty()) return NodeKind::config;
    if (place.parentPath.empty()) return NodeKind::plc;
    for (const NodeKind kind : {NodeKind::item, NodeKind::branch})
        if (baseOf(path, place, kind) != nullptr) return kind;
    return table_.at(row, Column::address).empty() ? NodeKind::branch : NodeKind::item;
}

const Node* RowTree::baseOf(std::string_view path, const Row& place, NodeKind kind) const {
    if (kind != NodeKind::item) return baseContainer(path);
    const Node* parent = baseContainer(place.parentPath);
    return parent == nullptr ? nullptr : childOf(*parent, place.name, kind);
}

const Node* RowTree::baseContainer(std::string_view path) const {
    const auto known = baseContainers_.find(path);
    if (known != baseContainers_.end()) return known->second;
    const Node* const root = base_.tree().root();
    const Node* node = root;
    std::optional rest = path;
    while (rest && node != nullptr && !path.empty()) {
        const auto name = takeName(rest);
        if (!name) return nullptr;
        node = childOf(*node, *name, node == root ? NodeKind::plc : NodeKind::branch);
    }
    baseContainers_.emplace(path, node);
    return node;
}

/// The child with that name, in upper or lower case, and of that kind; null if there is none.
const Node* RowTree::childOf(const Node& parent, const std::string& name, NodeKind kind) const {
    if (kind == NodeKind::plc) {
        const auto device = base_.devices().find(name);
        return device == nullptr ? nullptr : base_.deviceNode(device->getName());
    }
    const SharedText key = joinKey(parent.key(), name);
    const auto nodeOf = [&](const auto& record) {
        const Node* node = record == nullptr ? nullptr : base_.tree().FindNode(record->sKey);
        // Names may contain ".", so a node with another parent may have this key.
        return node != nullptr && node->parent() == &parent && node->kind() == kind ? node
                                                                                    : nullptr;
    };
    return kind == NodeKind::item ? nodeOf(base_.items().find(key))
                                  : nodeOf(base_.branches().find(key));
}

std::optional<std::size_t> RowTree::containerRow(std::string_view path) const {
    const auto found = containers_.find(path);
    if (found == containers_.end()) return std::nullopt;
    return found->second;
}

void RowTree::requireParents(std::vector<Finding>& faults) {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        Row& row = rows_[i];
        const std::string_view parent = row.parentPath;
        if (!row.isValid || parent.empty() || containerRow(parent) || baseContainer(parent))
            continue;
        row.isValid = false;
        faults.push_back({.line = table_.lineOf(i),
                          .place = std::string(nameOf(Column::path)),
                          .text = "no device or branch \"" + std::string(parent) + "\""});
    }
}
