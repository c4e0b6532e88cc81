#include "model/History.h"

#include <utility>

namespace {

const char* nounFor(NodeKind kind) {
    switch (kind) {
        case NodeKind::plc: return "device ";
        case NodeKind::branch: return "branch ";
        case NodeKind::item: return "item ";
        case NodeKind::config: return "";
    }
    return "";
}

}  // namespace

void History::begin(const DocumentState& state, std::string_view verb, std::string_view noun) {
    if (depth_++ > 0) return;
    before_ = state;
    verb_ = verb;
    noun_ = noun;
}

void History::end(Contents& contents) {
    if (--depth_ > 0) return;
    const Subjects subjects = std::exchange(subjects_, {});
    std::deque<Change> changes = std::exchange(changes_, {});
    if (changes.empty()) return;
    for (const Step& step : redo_)
        bytes_ -= step.bytes;
    redo_.clear();
    undo_.push_back({nameOf(subjects), std::move(changes), subjects, before_, saves_});
    count(undo_.back());
    dropOldest(contents);
}

std::string History::nameOf(const Subjects& subjects) const {
    const std::string of = verb_ + " of ";
    if (noun_.empty() && subjects.count == 1) {
        return of + nounFor(subjects.first->kind()) + subjects.first->text().string();
    }
    const std::string noun = noun_.empty() ? "item" : noun_;
    if (subjects.count == 0) return of + noun;
    return of + std::to_string(subjects.count) + " " + noun + (subjects.count == 1 ? "" : "s");
}

void History::recordAdded(Node& node) {
    if (!changes_.empty()) {
        auto* last = std::get_if<PresenceChange>(&changes_.back());
        if (last != nullptr && last->addOneMore(node)) return;
    }
    record<PresenceChange>(node);
}

void History::addSubject(Node& node, Node* replaced) {
    if (subjects_.count++ > 0) return;
    subjects_.first = &node;
    subjects_.firstReplaced = replaced;
}

void History::recordOrder(Node& node, std::vector<Node*> before) {
    if (!changes_.empty()) {
        record<OrderChange>(node, std::move(before));
    } else if (!undo_.empty()) {
        Step& last = undo_.back();
        last.changes.emplace_back(std::in_place_type<OrderChange>, node, std::move(before));
        count(last);
    }
}

Node* History::undoOrRedo(bool back, DocumentState& state, Contents& contents) {
    auto& from = back ? undo_ : redo_;
    auto& to = back ? redo_ : undo_;
    if (from.empty() || isOpen()) return nullptr;
    Step& step = to.emplace_back(std::move(from.back()));
    from.pop_back();
    {
        // When many texts or nodes change, the views are notified once.
        std::optional<ConfigTree::BulkChange> bulk;
        std::size_t texts = 0;
        std::size_t removedBytes = 0;
        for (const Change& change : step.changes) {
            if (const auto* renames = std::get_if<RenameChange>(&change)) texts += renames->texts();
            if (const auto* presence = std::get_if<PresenceChange>(&change)) {
                removedBytes += presence->bytes();
            }
        }
        constexpr std::size_t mostTexts = 10;
        constexpr std::size_t mostBytes = 1024UL * 1024;
        if (texts > mostTexts || removedBytes > mostBytes) bulk.emplace(contents.tree);
        const auto toggle = [&](Change& change) {
            std::visit([&](auto& each) { each.toggle(contents, back); }, change);
        };
        if (back) {
            for (auto change = step.changes.rbegin(); change != step.changes.rend(); ++change)
                toggle(*change);
        } else {
            for (Change& change : step.changes)
                toggle(change);
        }
    }
    count(step);
    std::swap(state, step.other);
    if (step.saves != saves_) state.saved = step.other.saved = false;
    const Subjects& subjects = step.subjects;
    Node* node = subjects.first;
    if (node == nullptr) return nullptr;
    if (subjects.count > 1) return node->parent();
    if (ConfigTree::isPresent(*node)) return node;
    node = subjects.firstReplaced;
    if (node != nullptr && ConfigTree::isPresent(*node)) return node;
    return subjects.first->parent();
}

void History::count(Step& step) {
    std::size_t bytes = sizeof step;
    for (const Change& change : step.changes)
        bytes += std::visit([](const auto& each) { return each.bytes(); }, change);
    bytes_ += bytes - std::exchange(step.bytes, bytes);
}

void History::dropOldest(Contents& contents) {
    for (; bytes_ > maxBytes && undo_.size() > 1; undo_.pop_front())
        bytes_ -= undo_.front().bytes;
    compactIfUseful(contents);
}

/// Removes free places of trees and registries when there are very many that no step needs any
/// more.
void History::compactIfUseful(Contents& contents) {
    constexpr std::size_t tolerated = 100'000;
    const std::size_t holes = contents.tree.holes() + contents.items.holes();
    const std::size_t nodes = contents.tree.nodes().size();
    if (holes < tolerated || holes < 2 * nodes + bytes_ / 100) return;
    ReservedPlaces places;
    for (auto* steps : {&undo_, &redo_})
        for (Step& step : *steps)
            for (Change& change : step.changes)
                std::visit(
                    [&](auto& each) {
                        if constexpr (requires { each.collect(places); }) each.collect(places);
                    },
                    change);
    places.compact(contents);
}

void History::clear() {
    undo_.clear();
    redo_.clear();
    bytes_ = 0;
}
