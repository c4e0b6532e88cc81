// Finds the records of items quickest in the order of their registry.
#pragma once

#include "model/ConfigTree.h"
#include "model/Registry.h"
#include "model/clsItem.h"

/// The records of the item nodes of a tree. Asked for in the order of the registry, which most
/// often is that of the file, they are found without a search.
class ItemRecords {
 public:
    explicit ItemRecords(const Registry<clsItem>& items) : items_(items), next_(items.begin()) {}

    /// Raises ErrorNumber::invalidCall for a node without a record.
    const clsItem& at(const Node& node) {
        if (next_ == items_.end() || (*next_).key != node.key()) {
            return items_.at(node.key());
        }
        const clsItem* record = (*next_).record;
        ++next_;
        return *record;
    }

 private:
    const Registry<clsItem>& items_;
    Registry<clsItem>::Iterator next_;
};
