// Finds the differences in meaning between two configurations.
#pragma once

#include <string>
#include <vector>

#include "tool/Columns.h"

/// A difference in one device, branch or item, or in the settings. Names, parents and fields are
/// compared. The order of nodes below the same parent is not.
struct Difference {
    enum class Kind { added, removed, moved, renamed, changed };

    /// The old and the new value of a column. For an added node, `from` is empty.
    struct Field {
        Column column;
        std::string from;
        std::string to;
    };

    Kind kind;
    NodeKind what;
    /// The path in the new configuration if the node was added or changed, else in the old one.
    std::string path;
    /// The new path of a moved or renamed node. A moved node may have a new name, too. The nodes
    /// below it move with it and are no differences of their own.
    std::string to;
    std::vector<Field> fields;
};

/// Returns the changes that turn `from` into `to`, in the order of `to`; removed nodes come last.
/// An item that is missing at its path is moved or renamed if there is a new item with the same
/// address and data type. A missing branch or device is moved or renamed if a new one contains most
/// of its children.
std::vector<Difference> compare(const Document& from, const Document& to);
