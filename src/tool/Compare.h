// What differs in meaning between two configurations.
#pragma once

#include <string>
#include <vector>

#include "tool/Columns.h"

/// One difference of a device, a branch, an item or the settings. Names, places and fields count;
/// the order of what stands beside one another does not.
struct Difference {
    enum class Kind { added, removed, moved, renamed, changed };

    /// What a column had and has; of something added, only what it has.
    struct Field {
        Column column;
        std::string from;
        std::string to;
    };

    Kind kind;
    NodeKind what;
    /// In the new configuration where it was added or changed, else in the old one.
    std::string path;
    /// Where it was moved to (and perhaps renamed), or its new name's path. What stands in it goes
    /// with it without a change of its own.
    std::string to;
    std::vector<Field> fields;
};

/// All changes that make the second of the first, in the order of the second, those that remove
/// something last. What is no more at its path, but elsewhere with the same address and data type,
/// was moved or renamed; so was a branch or device that most of its contents are found in.
std::vector<Difference> compare(const Document& from, const Document& to);
