// The rows of a table as what they are to become, each at its place.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "tool/Table.h"

/// Finds the parent of each row by its path, among the rows and in the configuration that they are
/// put into. Paths are matched without regard to case, as no two things that one configuration may
/// hold beside one another differ in nothing else.
class RowTree {
 public:
    /// What a row describes.
    struct Row {
        NodeKind kind = NodeKind::config;
        std::string_view parentPath;
        std::string name;            ///< the last in the path
        const Node* base = nullptr;  ///< what has the path in the other configuration
        bool isGood = false;         ///< its path and kind can be told
    };

    /// Adds a finding for each path and kind that cannot be taken, their file left empty.
    RowTree(const Table& table, const Document& base, std::vector<Finding>& faults);

    const std::vector<Row>& rows() const { return rows_; }

    /// The row of the device or branch with that path.
    std::optional<std::size_t> containerRow(std::string_view path) const;
    /// The device or branch with that path in the other configuration; null where there is none.
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
