// The columns of a table, and the values of a configuration in them. They are exported, imported
// and compared.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "model/Document.h"

enum class Column : std::uint8_t {
    path,
    kind,
    name,
    comment,
    address,
    index,
    dataType,
    elements,
    accessRight,
    flag,
    port,
    ediType,
    timeout
};

/// The headings of all columns, in the order of an export.
inline constexpr std::array<std::string_view, 13> columnNames{
    "path",     "kind",         "name", "comment", "address",  "index",   "data type",
    "elements", "access right", "flag", "port",    "EDI type", "time-out"};

/// All columns in the same order.
inline constexpr auto allColumns = [] {
    std::array<Column, columnNames.size()> all{};
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = static_cast<Column>(i);
    return all;
}();

constexpr std::string_view nameOf(Column column) {
    return columnNames[static_cast<std::size_t>(column)];
}

/// The columns of a kind of node, except path, kind and name, which are the same for all kinds. The
/// root has those of the global settings.
std::span<const Column> columnsOf(NodeKind kind);

/// "settings" for the root, "device", "branch" or "item".
std::string_view kindName(NodeKind kind);
/// The kind with that name, in upper or lower case, or nothing if there is none.
std::optional<NodeKind> kindNamed(std::string_view name);

/// The path of a node: the names from its device to the node itself, separated by ".", such as
/// "Plant.FLOOR1.Light3". Empty for the root. In a name, ".", "\", line feed, carriage return and
/// tab are escaped: "\.", "\\", "\n", "\r" and "\t". No two nodes have the same path.
std::string pathOf(const Node& node);

/// Appends a name to the path of its parent, with escapes.
void appendToPath(std::string& path, std::string_view name);

/// Removes the first name from a path and returns it without escapes. `path` becomes nullopt after
/// the last name. Returns nothing if a "\" is not part of one of the escapes above.
std::optional<std::string> takeName(std::optional<std::string_view>& path);

/// A path, split before its last name.
struct PathEnd {
    std::string_view parent;  ///< a path; empty for a device
    std::string name;
};
/// Returns nothing for a text that is no path: one with another escape, or with "." at its start.
std::optional<PathEnd> cutPath(std::string_view path);

/// The values of a node as texts. They become invalid when the document changes.
class Values {
 public:
    /// Raises ErrorNumber::invalidCall if the node has no record.
    Values(const Document& document, const Node& node);
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;
    ~Values() = default;

    /// The text in a column. Empty if the node's kind does not have that column, and for the index,
    /// which the export computes.
    std::string_view operator[](Column column) const {
        return texts_[static_cast<std::size_t>(column)];
    }

 private:
    std::string_view& at(Column column) { return texts_[static_cast<std::size_t>(column)]; }
    void setNumber(Column column, std::int32_t number);

    std::array<std::string_view, columnNames.size()> texts_;
    std::array<char, 12> number_{};
};
