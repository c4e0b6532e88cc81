// The steps that can be undone and redone.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Changes.h"

/// The numbers in the next proposed names. More than 16 bits: a configuration may contain all
/// 65,536 group addresses, and the next name needs a number too.
struct Counters {
    int devices = 0;
    int branches = 0;
    int items = 0;
};

/// The state of a document that a step changes in addition to the contents.
struct DocumentState {
    bool saved = false;  ///< there is no unsaved change
    Counters counters;
};

/// Collects the changes of each user action in a step, and undoes and redoes steps, the last one
/// first.
///
///     history.begin(state, "Delete");
///     history.record<PresenceChange>(contents, nodes);
///     history.addSubject(node);
///     history.end(contents);
///     history.undoName();  // "Delete of item Lamp"
///
/// When all steps together take more than `maxBytes`, the oldest are dropped, but never the last
/// one.
class History {
 public:
    static constexpr std::size_t maxBytes = 64UL * 1024 * 1024;

    /// Begins a step. All changes recorded before end() belong to it. Nested steps are part of the
    /// outermost one, which gives the name. `verb` is the action; `noun`, in the singular, is what
    /// is changed, when that is not the nodes themselves. `state` is the document's state before
    /// the step.
    void begin(const DocumentState& state, std::string_view verb, std::string_view noun = {});
    /// Ends the step. A step without a change is dropped; any other step makes redo impossible.
    void end(Contents& contents);
    /// True within a step.
    bool isOpen() const { return depth_ > 0; }

    /// Constructs a change, and appends it to the step.
    template <typename Kind, typename... Arguments>
    Kind& record(Arguments&&... arguments) {
        return std::get<Kind>(
            changes_.emplace_back(std::in_place_type<Kind>, std::forward<Arguments>(arguments)...));
    }
    /// Returns the last change of the step if it is of that kind, else a new one.
    template <typename Kind>
    Kind& current() {
        if (!changes_.empty())
            if (auto* last = std::get_if<Kind>(&changes_.back())) return *last;
        return record<Kind>();
    }
    /// Records that the node was added.
    void recordAdded(Node& node);

    /// Adds a node on which the user acted. `replaced` is the node that it replaces, if any.
    void addSubject(Node& node, Node* replaced = nullptr);

    /// Records that a click has sorted the children of a node; `before` is their former order. This
    /// is not a step of its own: it is undone with the last step that changed anything.
    void recordOrder(Node& node, std::vector<Node*> before);

    /// To be called after the configuration was saved: the saved states in older steps become
    /// invalid.
    void noteSaved() { ++saves_; }

    /// The name of the step to undo or redo, e.g. "Delete of 12 items"; empty when there is none.
    std::string undoName() const { return undo_.empty() ? std::string() : undo_.back().name; }
    std::string redoName() const { return redo_.empty() ? std::string() : redo_.back().name; }

    /// Undoes the last step, or redoes the step that was undone last, and updates `state`. Returns
    /// the node that the user acted on, or the parent of several; null when there is none, or no
    /// step.
    Node* undo(DocumentState& state, Contents& contents) {
        return undoOrRedo(true, state, contents);
    }
    Node* redo(DocumentState& state, Contents& contents) {
        return undoOrRedo(false, state, contents);
    }

    /// The memory of all steps in bytes, roughly.
    std::size_t bytes() const { return bytes_; }
    /// Drops all steps. Not to be called within a step.
    void clear();

 private:
    struct Subjects {
        Node* first = nullptr;
        Node* firstReplaced = nullptr;
        std::size_t count = 0;
    };
    struct Step {
        std::string name;
        std::deque<Change> changes;
        Subjects subjects;
        DocumentState other;    // before the step; once it was undone, after the step
        std::size_t saves = 0;  // the number of saves before the step
        std::size_t bytes = 0;
    };

    std::string nameOf(const Subjects& subjects) const;
    Node* undoOrRedo(bool back, DocumentState& state, Contents& contents);
    void count(Step& step);
    void dropOldest(Contents& contents);
    void compactIfUseful(Contents& contents);

    // The current step.
    int depth_ = 0;
    std::string verb_, noun_;
    DocumentState before_;
    std::deque<Change> changes_;
    Subjects subjects_;

    std::deque<Step> undo_, redo_;
    std::size_t bytes_ = 0;
    std::size_t saves_ = 0;
};
