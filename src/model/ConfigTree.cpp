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

ConfigTree::BulkChange::BulkChange(const ConfigTree& tree)
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
    node->parent_ = parent;
    node->isPresent_ = shown_ == this;
    Node& added = *node;
    nodes_.add(std::move(node));
    if (parent == nullptr) {
        root_ = &added;
    } else {
        addChild(*parent, added);
    }
    ++changes_;
    if (listener_ != nullptr) listener_->added();
    return added;
}

void ConfigTree::addChild(Node& parent, Node& child) {
    if (parent.children_ == nullptr) parent.children_ = std::make_unique<std::vector<Node*>>();
    child.row_ = static_cast<std::uint32_t>(parent.children_->size());
    parent.children_->push_back(&child);
}

Node& ConfigTree::nodeAt(const SharedText& key) const {
    Node* node = FindNode(key);
    if (node == nullptr) throw RunTimeError(ErrorNumber::elementNotFound);
    return *node;
}

/// Returns the node to select when `removed`, which is or contains the selected node, is removed.
Node* ConfigTree::selectionAfterRemoving(const Node& removed) {
    Node* parent = removed.parent_;
    const auto stays = [](const Node* sibling) { return !sibling->isBeingRemoved_; };
    const auto& siblings = parent->GetChildren();
    const auto place = siblings.begin() + rowOf(removed);
    const auto next = std::find_if(place, siblings.end(), stays);
    if (next != siblings.end()) return *next;
    const auto previous = std::find_if(std::make_reverse_iterator(place), siblings.rend(), stays);
    return previous != siblings.rend() ? *previous : parent;
}

/// Removes the nodes from the children of their parents, and adds their former places to `removed`.
void ConfigTree::removeChildren(const std::vector<Node*>& nodes,
                                std::vector<RemovedNodes::Top>& removed) {
    std::vector<Node*> parents;
    parents.reserve(nodes.size());
    for (const Node* node : nodes)
        parents.push_back(node->parent_);
    std::ranges::sort(parents, std::less<>());
    parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
    removed.reserve(nodes.size());
    for (Node* parent : parents) {
        auto& children = *parent->children_;
        auto kept = children.begin();
        for (std::size_t row = 0; row < children.size(); ++row) {
            Node* child = children[row];
            if (child->isBeingRemoved_) {
                child->isBeingRemoved_ = false;
                removed.push_back({child, parent, row});
            } else {
                *kept++ = child;
            }
        }
        children.erase(kept, children.end());
        parent->childRowsKnown_ = false;
    }
}

void ConfigTree::insertChildren(const std::vector<RemovedNodes::Top>& tops) {
    for (auto top = tops.begin(); top != tops.end();) {
        Node& parent = *top->parent;
        if (parent.children_ == nullptr) parent.children_ = std::make_unique<std::vector<Node*>>();
        const std::vector<Node*> others = std::exchange(*parent.children_, {});
        auto& children = *parent.children_;
        auto other = others.begin();
        for (; top != tops.end() && top->parent == &parent; ++top) {
            while (other != others.end() && children.size() < top->row)
                children.push_back(*other++);
            children.push_back(top->node);
        }
        children.insert(children.end(), other, others.end());
        parent.childRowsKnown_ = false;
    }
}

ConfigTree::RemovedNodes ConfigTree::takeOut(const std::vector<Node*>& nodes) {
    RemovedNodes removed;
    removed.tree_ = this;
    if (nodes.empty()) return removed;
    for (Node* node : nodes)
        node->isBeingRemoved_ = true;
    for (const Node* above = selected_; above != nullptr; above = above->parent_) {
        if (!above->isBeingRemoved_) continue;
        select(selectionAfterRemoving(*above));
        break;
    }

    // Views are notified of a single node only: they look at all siblings at each notification.
    std::optional<BulkChange> bulk;
    if (nodes.size() > 1) bulk.emplace(*this);
    if (listener_ != nullptr) listener_->aboutToRemove(*nodes.front());
    removeChildren(nodes, removed.tops_);
    const auto take = [&](Node& node) {
        node.isPresent_ = false;
        removed.nodes_.push_back(nodes_.take(node.key_));
    };
    removed.nodes_.reserve(nodes.size());
    for (Node* node : nodes) {
        take(*node);
        for (TreeWalk walk(*node); Node* below = walk.next();)
            take(*below);
    }
    ++changes_;
    if (listener_ != nullptr) listener_->removed();
    return removed;
}

void ConfigTree::putBack(RemovedNodes&& removed) {
    if (removed.tops_.empty()) return;
    std::optional<BulkChange> bulk;
    if (removed.tops_.size() > 1) bulk.emplace(*this);
    const RemovedNodes::Top& first = removed.tops_.front();
    if (listener_ != nullptr) listener_->aboutToAdd(first.parent, static_cast<int>(first.row));
    for (const RemovedNodes::Top& top : removed.tops_)
        top.node->parent_ = top.parent;
    for (Nodes::Taken& taken : removed.nodes_) {
        taken.element->isPresent_ = shown_ == this;
        nodes_.putBack(std::move(taken));
    }
    insertChildren(removed.tops_);
    ++changes_;
    if (listener_ != nullptr) listener_->added();
    removed = RemovedNodes();
}

void ConfigTree::moveTo(ConfigTree& other, Node& node, RemovedNodes& formerPlaces) {
    RemovedNodes here = takeOut({&node});
    if (formerPlaces.tops_.empty()) {
        formerPlaces.tops_.push_back({&node, other.root_, other.root_->GetChildren().size()});
        for (std::size_t i = 0; i < here.nodes_.size(); ++i)
            formerPlaces.nodes_.push_back(
                {nullptr, static_cast<Nodes::Place>(other.nodes_.endPlace() + i)});
    }
    for (std::size_t i = 0; i < here.nodes_.size(); ++i)
        formerPlaces.nodes_[i].element = std::move(here.nodes_[i].element);
    other.putBack(std::move(formerPlaces));
    formerPlaces = std::move(here);
}

void ConfigTree::compact(const std::vector<RemovedNodes*>& reserved) {
    std::vector<Nodes::Place*> places;
    for (RemovedNodes* removed : reserved)
        for (Nodes::Taken& taken : removed->nodes_)
            places.push_back(&taken.place);
    nodes_.compact(std::move(places));
}

ConfigTree::RemovedNodes::~RemovedNodes() {
    for (const Nodes::Taken& taken : nodes_)
        if (taken.element != nullptr && taken.element->isReferredTo_) tree_->forget(*taken.element);
}

/// Clears the references to a node that is about to be destroyed.
void ConfigTree::forget(const Node& node) const {
    auto& references = shown_->references_;
    const auto [first, last] = references.equal_range(&node);
    for (auto each = first; each != last; ++each) {
        each->second->lastText_ = node.text_;
        each->second->node_ = nullptr;
    }
    references.erase(first, last);
}

void ConfigTree::redirect(const Node& from, Node& to) const {
    std::vector<Reference*> references;
    const auto [first, last] = references_.equal_range(&from);
    for (auto each = first; each != last; ++each)
        references.push_back(each->second);
    for (Reference* reference : references)
        *reference = &to;
}

ConfigTree::Reference& ConfigTree::Reference::operator=(Node* node) {
    if (node_ != nullptr) {
        const auto [first, last] = tree_.references_.equal_range(node_);
        const auto own =
            std::find_if(first, last, [&](const auto& each) { return each.second == this; });
        tree_.references_.erase(own);
    }
    node_ = node;
    if (node != nullptr) {
        node->isReferredTo_ = true;
        tree_.references_.emplace(node, this);
    }
    return *this;
}

Node& ConfigTree::Reference::node() const {
    Node* node = get();
    if (node == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return *node;
}

void ConfigTree::clear() {
    if (listener_ != nullptr) listener_->aboutToReset();
    root_ = selected_ = nullptr;
    for (const auto& node : nodes_)
        if (node->isReferredTo_) forget(*node);
    nodes_.clear();
    ++changes_;
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
    ++changes_;
    if (listener_ != nullptr) listener_->changed(node);
}

void ConfigTree::recordsChanged() const {
    ++recordChanges_;
    if (listener_ != nullptr) listener_->recordsChanged();
}

bool ConfigTree::sortChildren(Node& node, std::vector<Node*>& before) {
    const auto isBefore = [](const Node* a, const Node* b) {
        return alphabeticallyBefore(a->text_, b->text_);
    };
    if (node.children_ == nullptr) return false;
    // Usually a few nodes were added to many sorted ones: sort only these, and merge them.
    auto& children = *node.children_;
    const auto added = std::ranges::is_sorted_until(children, isBefore);
    if (added == children.end()) return false;
    before = children;
    if (listener_ != nullptr) listener_->aboutToReorder(node);
    std::ranges::stable_sort(added, children.end(), isBefore);
    std::ranges::inplace_merge(children, added, isBefore);
    node.childRowsKnown_ = false;
    ++changes_;
    if (listener_ != nullptr) listener_->reordered(node);
    return true;
}

void ConfigTree::swapChildren(Node& node, std::vector<Node*>& children) {
    if (listener_ != nullptr) listener_->aboutToReorder(node);
    std::swap(*node.children_, children);
    node.childRowsKnown_ = false;
    ++changes_;
    if (listener_ != nullptr) listener_->reordered(node);
}

void ConfigTree::select(Node* node) const {
    if (node == selected_) return;
    selected_ = node;
    if (listener_ != nullptr) listener_->selectionChanged();
}

void ConfigTree::ensureVisible(Node& node) const {
    for (Node* above = node.parent_; above != nullptr; above = above->parent_)
        above->expanded_ = true;
    if (listener_ != nullptr) listener_->madeVisible(node);
}

void ConfigTree::show(Node& node) const {
    ensureVisible(node);
    select(&node);
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
