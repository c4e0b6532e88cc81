// A fast way to find the records of all items.
#pragma once

#include "base/RunTimeError.h"
#include "model/ConfigTree.h"
#include "model/Registry.h"
#include "model/clsItem.h"

/// Finds the records of the item nodes of a tree. When nodes are looked up in the order of the
/// registry, which usually is the order of the file, only the first needs a search:
///
///     ItemRecords records(document.items());
///     for (TreeWalk walk(top); const Node* node = walk.next();)
///         if (node->kind() == NodeKind::item) use(records.at(*node));
class ItemRecords {
 public:
    explicit ItemRecords(const Registry<clsItem>& items) : items_(items), next_(items.begin()) {}

    /// The record of the node. Raises ErrorNumber::invalidCall when there is none.
    const clsItem& at(const Node& node) {
        if (next_ == items_.end() || (*next_).key != node.key()) {
            next_ = items_.locate(node.key());
            if (next_ == items_.end()) throw RunTimeError(ErrorNumber::invalidCall);
        }
        const clsItem* record = (*next_).record;
        ++next_;
        return *record;
    }

 private:
    const Registry<clsItem>& items_;
    Registry<clsItem>::Iterator next_;
};
