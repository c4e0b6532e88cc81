#include "tool/Compare.h"

#include <deque>
#include <unordered_map>
#include <unordered_set>

#include "model/Keys.h"

namespace {

/// Which node of one configuration is which of the other: what stands at the same place under the
/// same name, and what was found elsewhere.
class Matching {
 public:
    Matching(const Document& from, const Document& to) : from_{from, {}}, to_{to, {}} {
        std::vector<const Node*> gone = unmatched(from_, to_);
        std::vector<const Node*> come = unmatched(to_, from_);
        if (gone.empty() || come.empty()) return;
        matchItems(gone, come, true);
        matchItems(gone, come, false);
        matchContainers(gone, {come.begin(), come.end()});
    }

    /// Calls `use` with each node of the new configuration, after what it stands in, with the old
    /// node that it was, or null, and the one that its parent was.
    template <typename Use>
    void forEachNew(const Use& use) const {
        forEach(to_, from_, use);
    }

    /// What is not in the new configuration any more, in order.
    std::vector<const Node*> removed() const { return unmatched(from_, to_); }

 private:
    using Nodes = std::unordered_map<const Node*, const Node*>;

    struct Side {
        const Document& document;
        Nodes elsewhere;  ///< its nodes by what was found of them on the other side
    };

    template <typename Use>
    static void forEach(const Side& side, const Side& other, const Use& use) {
        struct Place {
            const Node* node;  // on the other side
            std::size_t next;  // of its children, the one that most often follows
        };
        std::vector<Place> path{{other.document.tree().root(), 0}};
        for (TreeWalk walk(*side.document.tree().root()); const Node* node = walk.next();) {
            path.resize(walk.depth());
            Place& parent = path.back();
            const Node* same = find(side.elsewhere, *node);
            if (same == nullptr && parent.node != nullptr) {
                same = namesakeIn(other.document, *parent.node, *node, parent.next);
                if (same != nullptr && find(other.elsewhere, *same) != nullptr) same = nullptr;
            }
            use(*node, same, parent.node);
            path.push_back({same, 0});
        }
    }

    static const Node* find(const Nodes& nodes, const Node& node) {
        if (nodes.empty()) return nullptr;
        const auto found = nodes.find(&node);
        return found == nodes.end() ? nullptr : found->second;
    }

    static const Node* namesakeIn(const Document& document, const Node& parent, const Node& node,
                                  std::size_t& next) {
        const auto isNamesake = [&](const Node* other) {
            return other != nullptr && other->parent() == &parent && other->kind() == node.kind() &&
                   other->text() == node.text();
        };
        const auto& children = parent.GetChildren();
        const Node* same = next < children.size() ? children[next] : nullptr;
        if (!isNamesake(same)) {
            const bool isDevice = node.kind() == NodeKind::plc;
            same = document.tree().FindNode(isDevice ? node.text()
                                                     : joinKey(parent.key(), node.text()));
            if (!isNamesake(same)) return nullptr;
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
        from_.elsewhere.emplace(&old, &node);
        to_.elsewhere.emplace(&node, &old);
    }

    /// Items of the same address and type, and perhaps of the same name, in order.
    void matchItems(const std::vector<const Node*>& gone, const std::vector<const Node*>& come,
                    bool withName) {
        const auto traitsOf = [&](const Document& document, const Node& node) {
            const clsItem& item = document.items().at(node.key());
            std::string traits = item.sAddress.string() + '\n';
            traits += item.sDataType;
            if (withName) traits.append("\n").append(node.text());
            return SharedText(traits);
        };
        const auto isLeft = [](const Side& side, const Node* node) {
            return node->kind() == NodeKind::item && find(side.elsewhere, *node) == nullptr;
        };
        std::unordered_map<SharedText, std::deque<const Node*>> left;
        for (const Node* node : gone)
            if (isLeft(from_, node)) left[traitsOf(from_.document, *node)].push_back(node);
        for (const Node* node : come) {
            if (!isLeft(to_, node)) continue;
            const auto found = left.find(traitsOf(to_.document, *node));
            if (found == left.end() || found->second.empty()) continue;
            pair(*found->second.front(), *node);
            found->second.pop_front();
        }
    }

    /// A branch or device is the one that most of its contents are in now.
    void matchContainers(const std::vector<const Node*>& gone,
                         std::unordered_set<const Node*> come) {
        for (auto each = gone.rbegin(); each != gone.rend(); ++each) {  // the inner ones first
            const Node* best = mostlyIn(**each, come);
            if (best == nullptr) continue;
            pair(**each, *best);
            come.erase(best);
        }
    }

    /// Which of those that have come holds most of what a container held; null where none does.
    const Node* mostlyIn(const Node& container, const std::unordered_set<const Node*>& come) const {
        std::unordered_map<const Node*, std::size_t> found;
        const Node* best = nullptr;
        for (const Node* child : container.GetChildren()) {
            const Node* now = find(from_.elsewhere, *child);
            const Node* parent = now == nullptr ? nullptr : now->parent();
            if (!come.contains(parent) || parent->kind() != container.kind()) continue;
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
    Comparison(const Document& from, const Document& to)
        : from_(from), to_(to), fromItems_(from.items()), toItems_(to.items()) {}

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
        const Values values(to_, toItems_, node);
        for (const Column column : columnsOf(node.kind()))
            changes_.back().fields.push_back({column, {}, std::string(values[column])});
    }

    void compareFields(const Node& old, const Node& node) {
        const Values before(from_, fromItems_, old);
        const Values after(to_, toItems_, node);
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
    ItemRecords fromItems_;
    ItemRecords toItems_;
    std::vector<Difference> changes_;
};

}  // namespace

std::vector<Difference> compare(const Document& from, const Document& to) {
    return Comparison(from, to).changes();
}
