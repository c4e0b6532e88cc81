// The columns of a table, and what a configuration has in them: what is exported, imported and
// compared.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "model/Document.h"
#include "model/ItemRecords.h"

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

/// The heading of each, in the order of an export.
inline constexpr std::array<std::string_view, 13> columnNames{
    "path",     "kind",         "name", "comment", "address",  "index",   "data type",
    "elements", "access right", "flag", "port",    "EDI type", "time-out"};

constexpr std::string_view nameOf(Column column) {
    return columnNames[static_cast<std::size_t>(column)];
}

/// The columns of what a node of that kind has besides its place, its kind and its name. The root
/// stands for the global settings.
std::span<const Column> columnsOf(NodeKind kind);

/// "settings" for the root, "device", "branch" or "item".
std::string_view kindName(NodeKind kind);
/// The kind of that name, in letters of either case.
std::optional<NodeKind> kindNamed(std::string_view name);

/// Where a node stands: the names from its device's on, joined by ".", such as
/// "Plant.FLOOR1.Light3". A "." or "\" within a name has a "\" before it; line feed, carriage
/// return and tab are written \n, \r and \t. Empty for the root. No two nodes have the same path.
std::string pathOf(const Node& node);

/// Appends a name to the path of what it stands in.
void appendToPath(std::string& path, std::string_view name);

/// Takes the first name off a path, and gives it as it is, without "\"; `path` is none afterwards
/// when it was the last. Nothing for a "\" before another character than those above, or at the
/// end.
std::optional<std::string> takeName(std::optional<std::string_view>& path);

/// A path cut before its last name.
struct PathEnd {
    std::string_view parent;  ///< a path; empty for a device's
    std::string name;
};
/// Nothing for what is no path: with a "\" as above, or with a "." at the beginning.
std::optional<PathEnd> cutPath(std::string_view path);

/// What a node has in its columns, as texts. Good as long as the document is not changed.
class Values {
 public:
    /// Raises ErrorNumber::invalidCall for a node without a record.
    Values(const Document& document, ItemRecords& items, const Node& node);
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;
    ~Values() = default;

    /// Empty in a column that the node's kind does not have. That of the index is not known here.
    std::string_view operator[](Column column) const {
        return texts_[static_cast<std::size_t>(column)];
    }

 private:
    std::string_view& at(Column column) { return texts_[static_cast<std::size_t>(column)]; }
    void setNumber(Column column, std::int32_t number);

    std::array<std::string_view, columnNames.size()> texts_;
    std::array<char, 12> number_{};
};
