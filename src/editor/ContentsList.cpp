#include "editor/ContentsList.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "model/ListColumns.h"

namespace {

/// The text of a cell in a table of text. It is put in quotation marks if it contains a tab or a
/// line break, or begins with a quotation mark.
std::string asCell(std::string_view text) {
    if (text.find_first_of("\t\r\n") == std::string_view::npos && !text.starts_with('"')) {
        return std::string(text);
    }
    std::string quoted = "\"";
    for (const char c : text)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + "\"";
}

/// Appends a line to a table; `textOf` returns the text of a cell.
template <typename Cells, typename TextOf>
void appendLine(std::string& table, const Cells& cells, const TextOf& textOf) {
    bool isFirst = true;
    for (const auto& cell : cells)
        table.append(std::exchange(isFirst, false) ? "" : "\t").append(asCell(textOf(cell)));
    table += "\r\n";
}

}  // namespace

void ContentsList::clear() {
    list_.clearRows();
    list_.stopSorting();
}

void ContentsList::showDevices() {
    const ListView::Update update(list_);
    list_.clearRows();
    list_.setColumns(headings(deviceColumns()));
    list_.setView(ListView::View::report);
    for (const auto& [key, device] : document_.devices())
        device->AddToListView(list_);
}

void ContentsList::show(const Node& node, const ShowMessage& showMessage) {
    const ListView::Update update(list_);
    if (node.kind() == NodeKind::config) return showDevices();
    withIndex_ = node.kind() != NodeKind::item;
    list_.clearRows();
    list_.setColumns(headings(itemColumns(withIndex_)));
    list_.setView(ListView::View::report);
    if (node.kind() == NodeKind::item) {
        return document_.itemAt(node)->AddToListView(list_, withIndex_, showMessage);
    }
    for (const Node* child : node.GetChildren()) {
        if (child->kind() != NodeKind::item) continue;
        document_.itemAt(*child)->AddToListView(list_, withIndex_, showMessage);
    }
}

void ContentsList::showChange(const Node& node, const SharedText& oldKey,
                              const ShowMessage& showMessage) {
    const auto ownRow = list_.findRow(oldKey);
    // A row that is out of date may have the new key already. It now shows this node too.
    const bool isListed = ownRow || list_.findRow(node.key());
    ListView shown;  // filled before the list changes, as that may open message boxes
    if (isListed && node.kind() == NodeKind::item) {
        document_.itemAt(node)->AddToListView(shown, withIndex_, showMessage);
    }
    const ListView::Update update(list_);
    list_.rekeyRows(oldKey, node.key(), [&](const SharedText& newKey) {
        const Node* below = document_.tree().FindNode(newKey);
        while (below != nullptr && below != &node)
            below = below->parent();
        return below != nullptr;
    });
    if (shown.rows().empty()) return;
    const ListView::Row& row = shown.rows().front();
    if (const auto place = list_.findRow(row.key)) list_.replaceRow(*place, row);
    if (ownRow) list_.replaceRow(*ownRow, row);
}

/// Shows no message for an address without an index: show() did when it made the row.
void ContentsList::refreshRow(std::size_t place, const Node& item) {
    const auto record = document_.itemAt(item);
    ListView::Row row = list_.rows().at(place);
    row.key = record->sKey;
    row.icon = record->sDataType;
    fillCells(row, *record, itemColumns(withIndex_));
    list_.replaceRow(place, std::move(row));
}

void ContentsList::refresh(const std::vector<Node*>& items) {
    const ListView::Update update(list_);
    for (const Node* item : items)
        if (const auto place = list_.findRow(item->key())) refreshRow(*place, *item);
}

void ContentsList::ensureVisible(const Node& node) {
    if (const auto row = list_.findRow(node.key())) list_.ensureVisible(*row);
}

std::size_t ContentsList::selectedItemCount() const {
    std::size_t count = 0;
    for (const auto& row : list_.rows()) {
        if (!row.selected) continue;
        if (row.kind != NodeKind::item) return 0;
        ++count;
    }
    return count;
}

std::vector<Node*> ContentsList::selectedItems() const {
    std::vector<Node*> items;
    for (const auto& row : list_.rows())
        if (row.selected) items.push_back(&document_.itemNodeAt(row.key));
    return items;
}

std::string ContentsList::selectedAsTable() const {
    std::string table;
    appendLine(table, list_.columns(), [](const auto& column) { return column.text; });
    for (const auto& row : list_.rows())
        if (row.selected) appendLine(table, row.cells, [](const auto& cell) { return cell; });
    return table;
}
