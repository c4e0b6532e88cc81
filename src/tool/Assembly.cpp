#include "tool/Assembly.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <unordered_map>

#include "base/Numbers.h"
#include "base/RunTimeError.h"
#include "file/TextRules.h"
#include "model/Checks.h"
#include "model/Keys.h"

namespace {

/// The default of a new device or item for a column that is missing in the table. It is the same as
/// in the dialog.
std::string proposal(Column column, const GlobalSets& settings) {
    switch (column) {
        case Column::dataType: return "EIS1";
        case Column::accessRight: return "READWRITE";
        case Column::flag: return "READ";
        case Column::port: return settings.port;
        case Column::ediType: return settings.ediType;
        case Column::timeout: return std::to_string(settings.timeout);
        default: return {};
    }
}

/// The three parts of an address. The last one contains everything after the second "/".
std::array<std::string, 3> partsOf(std::string_view address) {
    std::array<std::string, 3> parts;
    for (std::string& part : parts) {
        const bool isLast = &part == &parts.back();
        const auto slash = isLast ? address.size() : std::min(address.find('/'), address.size());
        part = address.substr(0, slash);
        address.remove_prefix(std::min(slash + 1, address.size()));
    }
    return parts;
}

/// The fault of a number by the rules of a dialog. Letters are a fault, too: the field of the
/// dialog does not accept them.
std::string_view faultOfTypedNumber(std::string_view text,
                                    std::string_view (*faultOf)(std::string_view)) {
    const std::string_view fault = faultOf(text);
    return fault.empty() && !isNumber(text) ? faultOf("-1") : fault;
}

std::string_view faultOfAddress(std::string_view address) {
    std::string_view fault;
    for (const std::string& part : partsOf(address))
        if (fault.empty()) fault = faultOfTypedNumber(part, faultOfAddressPart);
    return fault;
}

/// The fault of a text by the dialog, or else by `read`, which raises an error for a number out of
/// range.
template <typename Read>
std::string faultOfNumber(std::string_view text, std::string_view faultOfField, const Read& read) {
    if (!faultOfField.empty()) return std::string(faultOfField);
    try {
        read(text);
        return {};
    } catch (const RunTimeError& error) {
        return error.description();
    }
}

std::string faultOfField(NodeKind kind, Column column, std::string_view text) {
    switch (column) {
        case Column::name:
            if (kind == NodeKind::item) return std::string(faultOfItemName(text));
            return kind == NodeKind::plc ? std::string(faultOfDeviceName(text)) : std::string();
        case Column::address: return std::string(faultOfAddress(text));
        case Column::elements:
            return faultOfNumber(text, faultOfTypedNumber(text, faultOfElements), readInt16);
        case Column::timeout: return faultOfNumber(text, faultOfTimeout(text), readInt32);
        case Column::flag:
            if (equalIgnoringCase(text, "READ") || equalIgnoringCase(text, "TRANSMIT")) return {};
            return "neither READ nor TRANSMIT";
        default: return {};
    }
}

/// The place of a field in the file.
FilePlace placeOf(NodeKind kind, Column column) {
    if (kind == NodeKind::item) return FilePlace::content;
    const bool isBranchName = kind == NodeKind::branch && column == Column::name;
    return isBranchName ? FilePlace::elementName : FilePlace::attribute;
}

class Assembly {
 public:
    Assembly(const Document& base, const Table& table, Document& result,
             std::vector<Finding>& findings)
        : base_(base),
          table_(table),
          tree_(table, base, findings),
          result_(result),
          findings_(findings),
          nodes_(table.rows()),
          isFaulty_(table.rows()),
          isAdded_(table.rows()) {}

    void run() {
        result_.setSettings(base_.settings());
        for (std::size_t row = 0; row < table_.rows(); ++row) {
            if (!rowAt(row).isValid) continue;
            check(row);
            if (rowAt(row).kind == NodeKind::config && !isFaulty_[row]) changeSettings(row);
            if (rowAt(row).base != nullptr) rowOfBase_.emplace(rowAt(row).base, row);
        }
        addBase();
        for (std::size_t row = 0; row < table_.rows(); ++row)
            if (rowAt(row).isValid) addNew(row);
    }

 private:
    using Row = RowTree::Row;

    /// The source of a node in the new configuration: a node of the base, a row, or both.
    struct Part {
        NodeKind kind = NodeKind::config;
        const Node* base = nullptr;
        std::optional<std::size_t> row;
    };

    const Row& rowAt(std::size_t row) const { return tree_.rows()[row]; }
    Part partAt(std::size_t row) const { return {rowAt(row).kind, rowAt(row).base, row}; }

    void fault(std::size_t row, Column column, std::string text,
               Severity severity = Severity::error) {
        if (severity == Severity::error) isFaulty_[row] = true;
        findings_.push_back({.line = table_.lineOf(row),
                             .severity = severity,
                             .place = std::string(nameOf(column)),
                             .text = std::move(text)});
    }

    /// The text for a column: from the table, else from the base, else the default.
    std::string textOf(const Part& part, Column column) const {
        if (part.row && table_.has(column)) return std::string(table_.at(*part.row, column));
        if (part.base != nullptr) return std::string(Values(base_, *part.base)[column]);
        if (column == Column::name) return rowAt(*part.row).name;
        return proposal(column, base_.settings());
    }

    /// Adds a finding for each invalid field of a row. Fields that keep their value from the base
    /// are not checked.
    void check(std::size_t row) {
        const NodeKind kind = rowAt(row).kind;
        const Part part = partAt(row);
        const bool isNew = part.base == nullptr;
        const auto columns = columnsOf(kind);
        const bool hasElements = clsItem::hasElements(textOf(part, Column::dataType));
        for (const Column column : allColumns) {
            if (column == Column::path || column == Column::kind || column == Column::index)
                continue;
            const bool isOwn = (column == Column::name && kind != NodeKind::config) ||
                               std::ranges::find(columns, column) != columns.end();
            if (!isOwn || (column == Column::elements && !hasElements)) {
                if (table_.at(row, column).empty()) continue;
                fault(row, column,
                      "the " + std::string(isOwn ? "data type" : kindName(kind)) +
                          " has none: to be left empty");
            } else if (isNew || table_.has(column)) {
                checkField(row, column, textOf(part, column));
            }
        }
    }

    void checkField(std::size_t row, Column column, const std::string& text) {
        const NodeKind kind = rowAt(row).kind;
        std::string refused = faultOfField(kind, column, text);
        if (!refused.empty()) return fault(row, column, std::move(refused));
        Fault inFile = faultOf(text, placeOf(kind, column));
        if (inFile.kind == FaultKind::none) return;
        const bool isWarning = inFile.kind == FaultKind::changed;
        fault(row, column, std::move(inFile.text), isWarning ? Severity::warning : Severity::error);
    }

    void changeSettings(std::size_t row) {
        const Part settings = partAt(row);
        result_.setSettings({.port = textOf(settings, Column::port),
                             .ediType = textOf(settings, Column::ediType),
                             .timeout = readInt32(textOf(settings, Column::timeout))});
    }

    /// Adds the nodes of the base, parents first.
    void addBase() {
        const Node& root = *base_.tree().root();
        containers_.emplace(&root, result_.tree().root());
        for (TreeWalk walk(root); const Node* node = walk.next();) {
            const auto parent = containers_.find(node->parent());
            if (parent == containers_.end()) continue;  // the parent could not be added
            Part part{node->kind(), node, std::nullopt};
            const auto row = rowOfBase_.find(node);
            if (row != rowOfBase_.end()) part.row = row->second;
            Node* added = add(part, *parent->second);
            if (added == nullptr) continue;
            if (part.kind != NodeKind::item) containers_.emplace(node, added);
            if (added->text() != node->text()) renamed_.emplace(added, *part.row);
        }
    }

    bool isPending(std::size_t row) const {
        return rowAt(row).isValid && rowAt(row).base == nullptr &&
               rowAt(row).kind != NodeKind::config && !isAdded_[row];
    }

    /// Adds the node of a row, after its missing parents, whose rows may come later in the table.
    void addNew(std::size_t row) {
        std::vector<std::size_t> rows;
        for (std::optional next = row; next && isPending(*next);
             next = tree_.containerRow(rowAt(*next).parentPath))
            rows.push_back(*next);
        for (; !rows.empty(); rows.pop_back()) {
            const std::size_t each = rows.back();
            isAdded_[each] = true;
            Node* const parent = parentOf(rowAt(each));
            if (parent != nullptr) nodes_[each] = add(partAt(each), *parent);
        }
    }

    /// The parent of the node of a row; null if the parent could not be added.
    Node* parentOf(const Row& row) const {
        if (row.parentPath.empty()) return result_.tree().root();
        const auto above = tree_.containerRow(row.parentPath);
        const Node* base = above ? rowAt(*above).base : tree_.baseContainer(row.parentPath);
        if (base == nullptr) return nodes_[*above];
        const auto found = containers_.find(base);
        return found == containers_.end() ? nullptr : found->second;
    }

    /// Adds a node and its record to the new configuration. Returns null and adds a finding if that
    /// fails.
    Node* add(const Part& part, Node& parent) {
        if (part.row && isFaulty_[*part.row]) return nullptr;
        const SharedText name =
            part.row ? SharedText(textOf(part, Column::name)) : part.base->text();
        try {
            if (part.kind == NodeKind::plc) return &result_.add(deviceOf(part));
            const SharedText key = joinKey(parent.key(), name);
            if (part.kind == NodeKind::item) {
                return &result_.add(itemOf(part, parent, key), parent);
            }
            const auto branch = std::make_shared<clsBranch>();
            branch->sName = name;
            branch->sKey = key;
            return &result_.add(branch, parent);
        } catch (const RunTimeError& error) {
            reportKeyClash(part, parent, name, error);
            return nullptr;
        }
    }

    std::shared_ptr<clsPLC> deviceOf(const Part& part) const {
        if (!part.row) return std::make_shared<clsPLC>(base_.deviceAt(*part.base));
        auto device = std::make_shared<clsPLC>();
        device->SetByForm({.txtName = textOf(part, Column::name),
                           .cmbPort = textOf(part, Column::port),
                           .cmbEdiType = textOf(part, Column::ediType),
                           .txtTimeout = textOf(part, Column::timeout)});
        return device;
    }

    std::shared_ptr<clsItem> itemOf(const Part& part, const Node& parent,
                                    const SharedText& key) const {
        const clsItem* old = part.base == nullptr ? nullptr : &base_.items().at(part.base->key());
        auto item = old == nullptr ? std::make_shared<clsItem>() : std::make_shared<clsItem>(*old);
        if (!part.row) {
            item->sKey = key;
            return item;
        }
        item->SetByForm({.txtItemName = textOf(part, Column::name),
                         .txtComment = textOf(part, Column::comment),
                         .cmbDataType = textOf(part, Column::dataType),
                         .txtElements = textOf(part, Column::elements),
                         .txtAddress = partsOf(textOf(part, Column::address)),
                         .cmbAccessRight = textOf(part, Column::accessRight),
                         .optRead = equalIgnoringCase(textOf(part, Column::flag), "READ")},
                        &parent, false);
        // Keeps even an address that no dialog accepts.
        if (old != nullptr && !table_.has(Column::address)) item->sAddress = old->sAddress;
        return item;
    }

    /// Adds a finding for a node whose key is in use. Its line is that of the node's row, else that
    /// of the row which gave the name to another node.
    void reportKeyClash(const Part& part, const Node& parent, const SharedText& name,
                        const RunTimeError& error) {
        const bool isDevice = part.kind == NodeKind::plc;
        const Node* owner = result_.tree().FindNode(isDevice ? name : joinKey(parent.key(), name));
        const bool isNameTaken =
            owner != nullptr && owner->parent() == &parent && owner->kind() == part.kind;
        Finding finding{.place = std::string(nameOf(Column::name)),
                        .text = isNameTaken ? std::string(nameTaken) : error.description()};
        const auto renamed = renamed_.find(owner);
        if (part.row || renamed != renamed_.end()) {
            finding.line = table_.lineOf(part.row ? *part.row : renamed->second);
        }
        findings_.push_back(std::move(finding));
    }

    const Document& base_;
    const Table& table_;
    const RowTree tree_;
    Document& result_;
    std::vector<Finding>& findings_;
    std::unordered_map<const Node*, std::size_t> rowOfBase_;
    std::unordered_map<const Node*, Node*> containers_;     // by the node in the base
    std::unordered_map<const Node*, std::size_t> renamed_;  // and the row of each
    // One entry for each row.
    std::vector<Node*> nodes_;
    std::vector<bool> isFaulty_;
    std::vector<bool> isAdded_;
};

}  // namespace

void assemble(const Document& base, const Table& table, Document& result,
              std::vector<Finding>& findings) {
    Assembly(base, table, result, findings).run();
}
