#include "file/FileSurvey.h"

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/KeyedSet.h"
#include "base/Text.h"
#include "model/Keys.h"

namespace {

/// The key of a node after reading.
SharedText keyAsRead(const Node& node) {
    std::vector<const Node*> path;
    for (const Node* each = &node; each->parent() != nullptr; each = each->parent())
        path.push_back(each);
    SharedText key = asRead(path.back()->text(), filePlaceOfName(*path.back()));
    for (auto each = path.rbegin() + 1; each != path.rend(); ++each)
        key = joinKey(key, asRead((*each)->text(), filePlaceOfName(**each)));
    return key;
}

/// A node by its key after reading, in upper or lower case.
struct ReadNode {
    static bool isEmpty(const ReadNode& read) { return read.node == nullptr; }
    static const SharedText& keyOf(const ReadNode& read) { return read.key; }
    static bool equal(std::string_view a, std::string_view b) { return equalIgnoringCase(a, b); }

    SharedText key;
    const Node* node = nullptr;
};

/// Walks the nodes in the order in which a reader of the saved file adds them, with the keys that
/// they have then. A reader skips a node if another node of its kind has its key, in upper or lower
/// case, or if any node has exactly its key.
class Surveyor {
 public:
    explicit Surveyor(const Document& document) : document_(document) {}

    FileSurvey survey() {
        if (const Node* root = document_.tree().root(); root != nullptr) {
            for (const Node* child : root->GetChildren())
                if (isSaved(*child) && !child->isDevice()) refuse(*child, "stands below no device");
        }
        std::vector<const Node*> devices;
        for (const auto& [key, device] : document_.devices()) {
            const Node* node = document_.deviceNode(device->getName());
            node == nullptr ? reportMissing(key) : devices.push_back(node);
        }
        for (const Node* device : devices)
            walk(*device);
        checkUnchangedItems(devices);
        if (found_.unsaved.empty()) {
            requireAll(document_.items(), itemCount_);
            requireAll(document_.branches(), branchCount_);
        }
        return std::move(found_);
    }

 private:
    using Set = KeyedSet<ReadNode, ReadNode>;

    /// A device or branch on the path of the walk.
    struct Place {
        SharedText key;            ///< after reading
        bool isUnchanged = false;  ///< this is the key of the node, except for upper and lower case
        std::size_t keyLength = 0;  ///< of the node's key, in bytes
    };

    void walk(const Node& device) {
        std::vector<Place> path;
        const auto enter = [&](const Node& node, SharedText key, FilePlace place, Set& ofItsKind) {
            addKey(node, key, ofItsKind);
            if (faultOf(node.text(), place).kind == FaultKind::unreadable) {
                found_.isAnyNameUnreadable = true;
            }
            hasPoint_ |= traitsOf(node.text()).hasPoint;
            const bool isUnchanged = equalIgnoringCase(key, node.key());
            path.push_back({std::move(key), isUnchanged, node.key().size()});
            return checkItemsIn(node, path.back());
        };
        enter(device, asRead(device.text(), FilePlace::attribute), FilePlace::attribute, devices_);
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            if (node->kind() == NodeKind::item) continue;
            if (!isSaved(*node)) {
                walk.skipChildren();
                continue;
            }
            path.resize(walk.depth());
            if (node->kind() == NodeKind::branch) ++branchCount_;
            if (walk.depth() > maxBranchDepth) refuse(*node, "lies more than 1,000 deep");
            const std::string name = asRead(node->text(), FilePlace::elementName);
            SharedText key = joinKey(path.back().key, name);
            if (enter(*node, std::move(key), FilePlace::elementName, branches_)) {
                walk.skipChildren();
            }
        }
    }

    /// Checks the items directly below a node. Returns true if it has no other children.
    bool checkItemsIn(const Node& node, const Place& place) {
        const auto isItem = [](const Node* child) { return child->kind() == NodeKind::item; };
        const auto& children = node.GetChildren();
        const bool areAllItems = std::ranges::all_of(children, isItem);
        for (const Node* child : children)
            if (isItem(child)) checkItem(*child, place, areAllItems);
        return areAllItems;
    }

    void checkItem(const Node& item, const Place& place, bool hasOnlyItemsBeside) {
        ++itemCount_;
        const std::string_view name = item.text();
        if (place.isUnchanged && (traitsOf(name).isReadUnchanged() ||
                                  faultOf(name, FilePlace::content).kind == FaultKind::none)) {
            // Most items. They keep their keys, which are unique among the records of items.
            countKey(item, place.keyLength + 1 + name.size());
            if (!hasOnlyItemsBeside) itemsToCheck_.push_back(&item);
            return;
        }
        if (isUnreadable(name, FilePlace::content)) found_.isAnyNameUnreadable = true;
        changedItems_.insert(&item);
        addKey(item, joinKey(place.key, asRead(name, FilePlace::content)), items_);
    }

    /// Compares the keys of items that reading does not change with all other keys. If no device or
    /// branch has a "." in its name, an item can have the key of another node only if there is a
    /// branch beside it: a node with that key, or, for an item with a "." in its name, the branch
    /// that contains the node.
    void checkUnchangedItems(const std::vector<const Node*>& devices) {
        if (hasPoint_ || !changedItems_.empty()) itemsToCheck_ = unchangedItems(devices);
        for (const Node* item : itemsToCheck_)
            findClashes(*item, item->key(), items_);
    }

    std::vector<const Node*> unchangedItems(const std::vector<const Node*>& devices) const {
        std::vector<const Node*> items;
        for (const Node* device : devices)
            for (TreeWalk walk(*device); const Node* node = walk.next();)
                if (node->kind() == NodeKind::item && !changedItems_.contains(node)) {
                    items.push_back(node);
                }
        return items;
    }

    /// Checks the length of a key and the sum of all lengths.
    void countKey(const Node& node, std::size_t length) {
        if (node.isDevice()) return;  // the reader does not count it either
        if (length > maxKeyBytes) refuse(node, "has a path longer than 64 KB");
        const bool wasWithin = keyBytes_ <= maxBytesOfAllKeys;
        keyBytes_ += length;
        if (wasWithin && keyBytes_ > maxBytesOfAllKeys) {
            refuse(node, "and all before it have paths longer than 128 MB together");
        }
    }

    /// Checks and adds the key of a node after reading. The key may differ in upper and lower case
    /// from the one that is read; the length is the same.
    void addKey(const Node& node, const SharedText& key, Set& ofItsKind) {
        countKey(node, key.size());
        findClashes(node, key, ofItsKind);
        ofItsKind.add({key, &node});
    }

    /// Finds nodes that have the same key after reading. Among nodes of different kinds, upper and
    /// lower case make a difference.
    void findClashes(const Node& node, const SharedText& key, const Set& ofItsKind) {
        for (const Set* others : {&devices_, &branches_, &items_}) {
            const ReadNode* other = others->find(key);
            if (other == nullptr || other->node == &node) continue;
            if (others != &ofItsKind && keyAsRead(*other->node) != keyAsRead(node)) continue;
            refuse(node, nullptr, other->node);
            refuse(*other->node, nullptr, &node);
        }
    }

    void refuse(const Node& node, const char* predicate, const Node* namesake = nullptr) {
        if (found_.first == nullptr) found_.first = &node;
        found_.unsaved.try_emplace(&node, FileSurvey::Reason{predicate, namesake});
    }

    /// The last check, in case all other rules missed a fault: the walk must have found as many
    /// items and branches as there are records, or a save would lose some.
    template <typename Records>
    void requireAll(const Records& records, std::size_t found) {
        if (records.count() == found) return;
        for (const auto& [key, record] : records)
            if (!document_.hasNode(key)) return reportMissing(key);
        reportMissing("A record");
    }

    void reportMissing(const std::string_view key) {
        found_.missingRecord.emplace(ErrorNumber::internalError,
                                     "\"" + std::string(key) + "\" would be left out of the file");
    }

    const Document& document_;
    FileSurvey found_;

    Set devices_, branches_, items_;
    bool hasPoint_ = false;                         // in the name of any device or branch
    std::unordered_set<const Node*> changedItems_;  // whose key changes by reading
    std::vector<const Node*> itemsToCheck_;         // the other items that may have a clash
    std::size_t branchCount_ = 0;
    std::size_t keyBytes_ = 0;  // length of all keys so far
    std::size_t itemCount_ = 0;
};

}  // namespace

bool isSaved(const Node& node) {
    if (!node.isDroppedDevice()) return node.kind() != NodeKind::config;
    for (TreeWalk walk(node); const Node* below = walk.next();)
        if (below->kind() != NodeKind::plc) return true;
    return false;
}

FilePlace filePlaceOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::config: return FilePlace::nowhere;
        case NodeKind::plc: return FilePlace::attribute;
        case NodeKind::branch: return FilePlace::elementName;
        case NodeKind::item: return FilePlace::content;
    }
    return FilePlace::nowhere;
}

FilePlace filePlaceOfName(const Node& node) {
    if (node.isDroppedDevice()) return FilePlace::elementName;
    return filePlaceOf(node.kind());
}

std::string pathForMessage(const Node& node) {
    if (node.parent() == nullptr) return "Global Settings";
    const bool isBelowRoot = node.parent()->parent() == nullptr;
    return shortened(isBelowRoot ? node.text() : node.key());
}

std::string FileSurvey::Reason::text() const {
    if (namesake == nullptr) return predicate;
    return "has the name of \"" + pathForMessage(*namesake) + "\" once it is read back";
}

FileSurvey surveyOf(const Document& document) { return Surveyor(document).survey(); }
