// The rules of what a configuration file can hold, for a whole document. The windows show their
// results as signs, a save is refused because of them, or the user is asked before it. All faults
// are found before anything is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "base/RunTimeError.h"
#include "file/FileSurvey.h"
#include "file/TextRules.h"
#include "model/Document.h"
#include "model/ListView.h"

/// The rules for one document in its current state. The first call after a change walks the whole
/// document once; later calls use the result of that walk.
///
///     const FileRules rules(document);
///     const Fault sign = rules.faultOf(node);
///     if (const auto refusal = rules.refusal()) throw refusal->error;
class FileRules {
 public:
    explicit FileRules(const Document& document) : document_(document) {}

    /// Returns the sign of a node that the tree shows: the most serious fault of its name and of
    /// its record. Faults in a detached subtree are shown at the bare node of the dropped device
    /// and at the root. Faults of the global settings are shown at the root.
    Fault faultOf(const Node& node) const;
    /// Returns the fault of a cell of the list: of a node's name, or of another text.
    Fault faultOf(const ListView::Row& row, std::size_t column) const;

    /// A reason not to save.
    struct Refusal {
        RunTimeError error;           ///< its description names the reason
        const Node* shown = nullptr;  ///< the node in the tree that has its sign
    };
    /// Returns the first reason not to save the configuration, or nothing.
    std::optional<Refusal> refusal() const;

    /// Texts that would be saved but could not be read back.
    struct Unreadable {
        std::size_t count = 0;
        std::string firstPath;        ///< path of the first one in the order of the file
        const Node* shown = nullptr;  ///< the node in the tree that has its sign
    };
    Unreadable unreadable() const;

 private:
    const FileSurvey& survey() const;
    void findFaultsInDetached(const Node& device) const;
    Fault faultByLastSurvey(const Node& node) const;
    bool isAnyUnreadable() const;
    const Node* shownFor(const Node& node) const;

    const Document& document_;
    mutable FileSurvey survey_;
    /// The most serious fault in each detached device, by the device's name.
    mutable std::unordered_map<SharedText, Fault> detachedFaults_;
    /// What the result of a survey depends on: counts of changes, and of records.
    struct State {
        std::uint64_t tree, detached, records;
        std::size_t devices, branches, items;
        bool operator==(const State&) const = default;
    };
    /// That of the last survey.
    mutable std::optional<State> surveyed_;
};
