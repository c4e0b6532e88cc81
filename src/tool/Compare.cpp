#include "tool/Compare.h"

#include <deque>
#include <unordered_map>
#include <unordered_set>

#include "model/Keys.h"

namespace {

/// Finds the node of the other configuration that is the same: by path and kind, or else by address
/// and data type, or by children.
class Matching {
 public:
    Matching(const Document& from, const Document& to) : from_{from, {}}, to_{to, {}} {
        const std::vector<const Node*> missing = unmatched(from_, to_);
        const std::vector<const Node*> added = unmatched(to_, from_);
        matchItems(missing, added, true);
        matchItems(missing, added, false);
        matchContainers(missing, {added.begin(), added.end()});
    }

    /// Calls `use` for each node of the new configuration, parents first, with the node, the same
    /// node in the old configuration or null, and the same of its parent.
    template <typename Use>
    void forEachNew(const Use& use) const {
        forEach(to_, from_, use);
    }

    /// The nodes that are not in the new configuration any more, in order.
    std::vector<const Node*> removed() const { return unmatched(from_, to_); }

 private:
    using Nodes = std::unordered_map<const Node*, const Node*>;

    struct Side {
        const Document& document;
        Nodes matches;  ///< nodes with another path on the other side, and those nodes
    };

    template <typename Use>
    static void forEach(const Side& side, const Side& other, const Use& use) {
        struct Place {
            const Node* node;  // the same node on the other side
            std::size_t next;  // the row of its child to try first
        };
        std::vector<Place> path{{other.document.tree().root(), 0}};
        for (TreeWalk walk(*side.document.tree().root()); const Node* node = walk.next();) {
            path.resize(walk.depth());
            Place& parent = path.back();
            const Node* same = find(side.matches, *node);
            if (same == nullptr && parent.node != nullptr) {
                same = sameNameIn(other.document, *parent.node, *node, parent.next);
                if (same != nullptr && find(other.matches, *same) != nullptr) same = nullptr;
            }
            use(*node, same, parent.node);
            path.push_back({same, 0});
        }
    }

    static const Node* find(const Nodes& nodes, const Node& node) {
        const auto found = nodes.find(&node);
        return found == nodes.end() ? nullptr : found->second;
    }

    /// The child of `parent` with name and kind of `node`; null if there is none. Tries the row
    /// `next` first: children mostly have the same order in both configurations.
    static const Node* sameNameIn(const Document& document, const Node& parent, const Node& node,
                                  std::size_t& next) {
        const auto isSame = [&](const Node* other) {
            return other != nullptr && other->parent() == &parent && other->kind() == node.kind() &&
                   other->text() == node.text();
        };
        const auto& children = parent.GetChildren();
        const Node* same = next < children.size() ? children[next] : nullptr;
        if (!isSame(same)) {
            const bool isDevice = node.kind() == NodeKind::plc;
            same = document.tree().FindNode(isDevice ? node.text()
                                                     : joinKey(parent.key(), node.text()));
            if (!isSame(same)) return nullptr;
        }
        next = static_cast<std::size_t>(ConfigTree::rowOf(*same)) + 1;
        return same;
    }

    static std::vector<const Node*> unmatched(const Side& side, const Side& other) {
        std::vector<const Node*> nodes;
        forEach(side, other, [&](const Node& node, const Node* same, const Node* /*parent*/) {
            if (same == nullptr) nodes.push_back(&node);
        });
        return nodes;
    }

    void pair(const Node& old, const Node& node) {
        from_.matches.emplace(&old, &node);
        to_.matches.emplace(&node, &old);
    }

    /// Matches items with the same address and data type, and the same name if `withName`, in
    /// order.
    void matchItems(const std::vector<const Node*>& missing, const std::vector<const Node*>& added,
                    bool withName) {
        const auto traitsOf = [&](const Document& document, const Node& node) {
            const clsItem& item = document.items().at(node.key());
            std::string traits = item.sAddress.string() + '\n';
            traits += item.sDataType;
            if (withName) traits.append("\n").append(node.text());
            return SharedText(traits);
        };
        const auto isUnmatchedItem = [](const Side& side, const Node* node) {
            return node->kind() == NodeKind::item && find(side.matches, *node) == nullptr;
        };
        std::unordered_map<SharedText, std::deque<const Node*>> candidates;
        for (const Node* node : missing)
            if (isUnmatchedItem(from_, node))
                candidates[traitsOf(from_.document, *node)].push_back(node);
        for (const Node* node : added) {
            if (!isUnmatchedItem(to_, node)) continue;
            const auto found = candidates.find(traitsOf(to_.document, *node));
            if (found == candidates.end() || found->second.empty()) continue;
            pair(*found->second.front(), *node);
            found->second.pop_front();
        }
    }

    /// Matches each missing branch or device with the added one that contains most of its children.
    void matchContainers(const std::vector<const Node*>& missing,
                         std::unordered_set<const Node*> added) {
        for (auto each = missing.rbegin(); each != missing.rend(); ++each) {  // children first
            const Node* best = bestMatch(**each, added);
            if (best == nullptr) continue;
            pair(**each, *best);
            added.erase(best);
        }
    }

    /// The added node that contains most children of a missing one; null if none contains any.
    const Node* bestMatch(const Node& container,
                          const std::unordered_set<const Node*>& added) const {
        std::unordered_map<const Node*, std::size_t> found;
        const Node* best = nullptr;
        for (const Node* child : container.GetChildren()) {
            const Node* now = find(from_.matches, *child);
            const Node* parent = now == nullptr ? nullptr : now->parent();
            if (!added.contains(parent) || parent->kind() != container.kind()) continue;
            if (++found[parent] > (best == nullptr ? 0 : found[best])) best = parent;
        }
        return best;
    }

    Side from_;
    Side to_;
};

Difference changeOf(Difference::Kind kind, const Node& node) {
    return {.kind = kind, .what = node.kind(), .path = pathOf(node), .to = {}, .fields = {}};
}

class Comparison {
 public:
    Comparison(const Document& from, const Document& to) : from_(from), to_(to) {}

    std::vector<Difference> changes() {
        const Matching matching(from_, to_);
        compareFields(*from_.tree().root(), *to_.tree().root());
        matching.forEachNew([&](const Node& node, const Node* old, const Node* oldOfParent) {
            if (old == nullptr) return describeAdded(node);
            const bool isMoved = old->parent() != oldOfParent;
            if (isMoved || old->text() != node.text()) {
                changes_.push_back(
                    changeOf(isMoved ? Difference::Kind::moved : Difference::Kind::renamed, *old));
                changes_.back().to = pathOf(node);
            }
            compareFields(*old, node);
        });
        for (const Node* node : matching.removed())
            changes_.push_back(changeOf(Difference::Kind::removed, *node));
        return std::move(changes_);
    }

 private:
    void describeAdded(const Node& node) {
        changes_.push_back(changeOf(Difference::Kind::added, node));
        const Values values(to_, node);
        for (const Column column : columnsOf(node.kind()))
            changes_.back().fields.push_back({column, {}, std::string(values[column])});
    }

    void compareFields(const Node& old, const Node& node) {
        const Values before(from_, old);
        const Values after(to_, node);
        std::vector<Difference::Field> fields;
        for (const Column column : columnsOf(node.kind()))
            if (before[column] != after[column]) {
                fields.push_back({column, std::string(before[column]), std::string(after[column])});
            }
        if (fields.empty()) return;
        changes_.push_back(changeOf(Difference::Kind::changed, node));
        changes_.back().fields = std::move(fields);
    }

    const Document& from_;
    const Document& to_;
    std::vector<Difference> changes_;
};

}  // namespace

std::vector<Difference> compare(const Document& from, const Document& to) {
    return Comparison(from, to).changes();
}
