// The steps that can be undone and redone.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Changes.h"

/// They number default names. Wider than the 16 bits that they have elsewhere: a configuration may
/// hold all 65,536 group addresses, and the next name needs a number too.
struct Counters {
    int devices = 0;
    int branches = 0;
    int items = 0;
};

/// The state of a document beside its contents that a step changes too.
struct DocumentState {
    bool saved = false;  ///< there is no unsaved change
    Counters counters;
};

/// Collects the changes of each action of the user in a step, and takes steps back or makes them
/// again, the last one first.
///
///     history.begin(state, "Delete");
///     history.record<PresenceChange>(contents, nodes);
///     history.concerns(node);
///     history.end(contents);
///     history.undoName();  // "Delete of item Lamp"
///
/// Steps are kept until all together take more than `mostBytes`; then the oldest go. The last one
/// always stays.
class History {
 public:
    static constexpr std::size_t mostBytes = 64UL * 1024 * 1024;

    /// A step begins: what is recorded up to its end belongs to it. Steps may be nested: they are
    /// then one, named by the outermost. `verb` says what is done; `noun`, in the singular, what it
    /// is done to, where that is not the nodes themselves.
    void begin(const DocumentState& state, std::string_view verb, std::string_view noun = {});
    /// A step without a change is dropped; any other one ends all that could be redone.
    void end(Contents& contents);
    /// True within a step.
    bool isOpen() const { return depth_ > 0; }

    /// Makes a change, as one more or as part of the last one.
    template <typename Kind, typename... Arguments>
    Kind& record(Arguments&&... arguments) {
        return std::get<Kind>(
            changes_.emplace_back(std::in_place_type<Kind>, std::forward<Arguments>(arguments)...));
    }
    /// The last change if it is of that kind, else a new one.
    template <typename Kind>
    Kind& current() {
        if (!changes_.empty())
            if (auto* last = std::get_if<Kind>(&changes_.back())) return *last;
        return record<Kind>();
    }
    void recordAdded(Node& node);

    /// A node that the user acted on. Where the action made another one of it, `before` is the old
    /// one.
    void concerns(Node& node, Node* before = nullptr);

    /// A click has sorted the children of a node. That is no step: it is taken back with the last.
    void recordOrder(Node& node, std::vector<Node*> before);

    /// The configuration was saved: what a step remembers of the saved state counts no more.
    void noteSaved() { ++saves_; }

    /// What would be undone or redone, e.g. "Delete of 12 items"; empty when there is nothing.
    std::string undoName() const { return undo_.empty() ? std::string() : undo_.back().name; }
    std::string redoName() const { return redo_.empty() ? std::string() : redo_.back().name; }

    /// Takes the last step back, or makes the one again that was taken back last. Gives the node
    /// that it is about; null when it is about none, or there was no step.
    Node* undo(DocumentState& state, Contents& contents) { return go(true, state, contents); }
    Node* redo(DocumentState& state, Contents& contents) { return go(false, state, contents); }

    /// The bytes that all steps take, roughly.
    std::size_t bytes() const { return bytes_; }
    void clear();

 private:
    struct Subjects {
        Node* first = nullptr;
        Node* firstBefore = nullptr;
        std::size_t count = 0;
    };
    struct Step {
        std::string name;
        std::deque<Change> changes;
        Subjects subjects;
        DocumentState other;    // before the step or, once it was taken back, after it
        std::size_t saves = 0;  // so often was saved before
        std::size_t bytes = 0;
    };

    std::string nameOf(const Subjects& subjects) const;
    Node* go(bool back, DocumentState& state, Contents& contents);
    void count(Step& step);
    void dropOldest(Contents& contents);
    void compactIfWorthIt(Contents& contents);

    // The step that is open.
    int depth_ = 0;
    std::string verb_, noun_;
    DocumentState before_;
    std::deque<Change> changes_;
    Subjects subjects_;

    std::deque<Step> undo_, redo_;
    std::size_t bytes_ = 0;
    std::size_t saves_ = 0;
};
