#include "model/ConfigTree.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "base/RunTimeError.h"
#include "base/Text.h"

std::string_view tagOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::config: return "config";
        case NodeKind::plc: return "plc";
        case NodeKind::branch: return "branch";
        case NodeKind::item: return "item";
    }
    return {};
}

const std::vector<Node*>& Node::GetChildren() const {
    static const std::vector<Node*> none;
    return children_ == nullptr ? none : *children_;
}

ConfigTree::BulkChange::BulkChange(ConfigTree& tree)
    : tree_(tree), listener_(std::exchange(tree.listener_, nullptr)) {
    if (listener_ != nullptr) listener_->aboutToReset();
}

ConfigTree::BulkChange::~BulkChange() {
    tree_.listener_ = listener_;
    if (listener_ != nullptr) listener_->reset();
}

Node& ConfigTree::AddNode(const SharedText& parentKey, SharedText key, SharedText text,
                          NodeKind kind) {
    Node* parent = parentKey.empty() ? nullptr : &nodeAt(parentKey);
    return AddNode(parent, std::move(key), std::move(text), kind);
}

Node& ConfigTree::AddNode(Node* parent, SharedText key, SharedText text, NodeKind kind) {
    if (parent == nullptr ? root_ != nullptr : parent->kind_ == NodeKind::item) {
        throw RunTimeError(parent == nullptr ? ErrorNumber::invalidCall
                                             : ErrorNumber::elementNotFound);
    }
    if (key.empty()) throw RunTimeError(ErrorNumber::invalidCall);
    if (nodes_.find(key) != nullptr) throw RunTimeError(ErrorNumber::keyNotUnique);

    auto node = std::make_unique<Node>();
    node->key_ = std::move(key);
    node->text_ = std::move(text);
    node->kind_ = kind;
    const auto row = parent == nullptr ? 0 : parent->GetChildren().size();
    if (listener_ != nullptr) listener_->aboutToAdd(parent, static_cast<int>(row));
    Node& added = append(parent, std::move(node));
    if (parent == nullptr) {
        root_ = &added;
    } else {
        addChild(*parent, added);
    }
    if (listener_ != nullptr) listener_->added();
    return added;
}

void ConfigTree::addChild(Node& parent, Node& child) {
    if (parent.children_ == nullptr) parent.children_ = std::make_unique<std::vector<Node*>>();
    child.row_ = static_cast<std::uint32_t>(parent.children_->size());
    parent.children_->push_back(&child);
}

/// Owns the node from now on, as the one that was added last.
Node& ConfigTree::append(Node* parent, std::unique_ptr<Node> node) {
    node->parent_ = parent;
    Node& added = *node;
    nodes_.add(std::move(node));
    return added;
}

Node& ConfigTree::nodeAt(const SharedText& key) const {
    Node* node = FindNode(key);
    if (node == nullptr) throw RunTimeError(ErrorNumber::elementNotFound);
    return *node;
}

/// What becomes selected in place of a node that goes.
Node* ConfigTree::heirOf(const Node& leaving) {
    Node* parent = leaving.parent_;
    const auto stays = [](const Node* sibling) { return !sibling->leaving_; };
    const auto& siblings = parent->GetChildren();
    const auto place = siblings.begin() + rowOf(leaving);
    const auto next = std::find_if(place, siblings.end(), stays);
    if (next != siblings.end()) return *next;
    const auto previous = std::find_if(std::make_reverse_iterator(place), siblings.rend(), stays);
    return previous != siblings.rend() ? *previous : parent;
}

void ConfigTree::removeAll(const std::vector<Node*>& nodes) {
    takeOut(nodes, [](const std::unique_ptr<Node>& /*gone*/) {});
}

void ConfigTree::moveTo(ConfigTree& other, Node& node) {
    takeOut({&node}, [&](std::unique_ptr<Node> gone) {
        Node* const parent = gone.get() == &node ? other.root_ : gone->parent_;
        other.append(parent, std::move(gone));
    });
    node.leaving_ = false;
    addChild(*other.root_, node);
}

/// `receive` is given each node that goes, after its parent.
template <typename Receive>
void ConfigTree::takeOut(const std::vector<Node*>& nodes, const Receive& receive) {
    if (nodes.empty()) return;
    for (Node* node : nodes)
        node->leaving_ = true;
    for (const Node* above = selected_; above != nullptr; above = above->parent_) {
        if (!above->leaving_) continue;
        select(heirOf(*above));
        break;
    }

    // A view is told of each change for one node only: it looks at all siblings every time.
    std::optional<BulkChange> bulk;
    if (nodes.size() > 1) bulk.emplace(*this);
    if (listener_ != nullptr) listener_->aboutToRemove(*nodes.front());
    std::vector<Node*> parents;
    parents.reserve(nodes.size());
    for (const Node* node : nodes)
        parents.push_back(node->parent_);
    std::ranges::sort(parents, std::less<>());
    parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
    for (Node* parent : parents) {
        std::erase_if(*parent->children_, [](const Node* child) { return child->leaving_; });
        parent->childRowsKnown_ = false;
    }
    std::vector<Node*> gone = nodes;
    for (const Node* node : nodes)
        for (TreeWalk walk(*node); Node* below = walk.next();)
            gone.push_back(below);
    for (const Node* each : gone) {
        for (Reference* reference : references_)
            if (reference->node_ == each) reference->node_ = nullptr;
        receive(nodes_.take(each->key_));
    }
    if (listener_ != nullptr) listener_->removed();
}

void ConfigTree::clear() {
    if (listener_ != nullptr) listener_->aboutToReset();
    root_ = selected_ = nullptr;
    for (Reference* reference : references_)
        reference->node_ = nullptr;
    nodes_.clear();
    if (listener_ != nullptr) listener_->reset();
}

void ConfigTree::setKey(Node& node, SharedText key) {
    if (key == node.key()) return;
    if (key.empty()) throw RunTimeError(ErrorNumber::invalidCall);
    if (nodes_.find(key) != nullptr) throw RunTimeError(ErrorNumber::keyNotUnique);
    nodes_.rekey(node.key_, [&] { node.key_ = std::move(key); });
}

void ConfigTree::setText(Node& node, SharedText text) {
    node.text_ = std::move(text);
    if (listener_ != nullptr) listener_->changed(node);
}

void ConfigTree::sortChildren(Node& node) {
    const auto before = [](const Node* a, const Node* b) {
        return alphabeticallyBefore(a->text_, b->text_);
    };
    if (node.children_ == nullptr) return;
    // Most often a few were added to many in order: the many are not sorted once more.
    auto& children = *node.children_;
    const auto added = std::ranges::is_sorted_until(children, before);
    if (added == children.end()) return;
    if (listener_ != nullptr) listener_->aboutToReorder(node);
    std::ranges::stable_sort(added, children.end(), before);
    std::ranges::inplace_merge(children, added, before);
    node.childRowsKnown_ = false;
    if (listener_ != nullptr) listener_->reordered(node);
}

void ConfigTree::select(Node* node) {
    if (node == selected_) return;
    selected_ = node;
    if (listener_ != nullptr) listener_->selectionChanged();
}

void ConfigTree::ensureVisible(Node& node) {
    for (Node* above = node.parent_; above != nullptr; above = above->parent_)
        above->expanded_ = true;
    if (listener_ != nullptr) listener_->madeVisible(node);
}

int ConfigTree::rowOf(const Node& node) {
    const Node* parent = node.parent_;
    if (parent == nullptr) return 0;
    if (!parent->childRowsKnown_) {
        std::uint32_t row = 0;
        for (const Node* child : parent->GetChildren())
            child->row_ = row++;
        parent->childRowsKnown_ = true;
    }
    return static_cast<int>(node.row_);
}

Node* TreeWalk::next() {
    if (entered_ && !current_->GetChildren().empty()) {
        path_.push_back({current_, 0});
    } else {
        while (!path_.empty() && ++path_.back().child == path_.back().parent->GetChildren().size())
            path_.pop_back();
    }
    entered_ = true;
    if (path_.empty()) return nullptr;
    Node* node = path_.back().parent->GetChildren()[path_.back().child];
    current_ = node;
    return node;
}
