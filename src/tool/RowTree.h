// The rows of a table as nodes of a configuration.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "tool/Table.h"

/// Finds kind and parent of each row by its path, among the rows and in the base configuration,
/// which the rows change. Paths are compared without regard to case: two nodes below the same
/// parent never differ in case only.
class RowTree {
 public:
    /// The node that a row describes.
    struct Row {
        NodeKind kind = NodeKind::config;
        std::string_view parentPath;
        std::string name;            ///< the last name of the path
        const Node* base = nullptr;  ///< the node with this path in the base; null if none
        bool isValid = false;        ///< path and kind have no fault
    };

    /// Adds a finding, without file, for each row whose path or kind has a fault.
    RowTree(const Table& table, const Document& base, std::vector<Finding>& faults);

    const std::vector<Row>& rows() const { return rows_; }

    /// The row of the device or branch with that path, or nothing if there is none.
    std::optional<std::size_t> containerRow(std::string_view path) const;
    /// The device or branch with that path in the base, or null if there is none.
    const Node* baseContainer(std::string_view path) const;

 private:
    struct Hash {
        std::size_t operator()(std::string_view text) const { return hashIgnoringCase(text); }
    };
    struct Equal {
        bool operator()(std::string_view a, std::string_view b) const {
            return equalIgnoringCase(a, b);
        }
    };
    template <typename Value>
    using ByPath = std::unordered_map<std::string_view, Value, Hash, Equal>;

    void add(std::size_t row, std::vector<Finding>& faults);
    std::optional<NodeKind> kindOf(std::size_t row, const Row& place) const;
    const Node* baseOf(std::string_view path, const Row& place, NodeKind kind) const;
    const Node* childOf(const Node& parent, const std::string& name, NodeKind kind) const;
    void requireParents(std::vector<Finding>& faults);

    const Table& table_;
    const Document& base_;
    std::vector<Row> rows_;
    ByPath<std::size_t> containers_;  // rows of settings, devices and branches
    ByPath<std::size_t> items_;
    mutable ByPath<const Node*> baseContainers_;
};
