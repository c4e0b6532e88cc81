// What a file can hold. A configuration is written as its texts stand: nothing is escaped, and a
// character is one byte (ISO-8859-1). So some texts make a file that cannot be read, some come back
// as others, and two nodes may have one key once they are read back. All of that is found here,
// before anything is written: by the signs in the windows, by the refusal of a save, and by the
// question before one.
//
// What XML allows: https://www.w3.org/TR/xml/ (XML 1.0, fifth edition), productions [4] and [4a]
// of names, [10] of attributes, [14] of character data, [2] of characters, and 2.11 and 3.3.3 of
// how line ends and blanks are read; https://www.w3.org/TR/xml-names/ of colons in names.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/RunTimeError.h"
#include "model/Document.h"
#include "model/ListView.h"

/// Where in the file a text stands.
enum class FilePlace {
    nowhere,      ///< the root's text
    elementName,  ///< a branch's name
    content,      ///< what an item holds: name, comment, address, ...
    attribute     ///< what a device or the settings hold, in quotation marks: name, port, EDI type
};

/// What comes of a fault, the gravest last.
enum class FaultKind {
    none,
    changed,     ///< saved, and read back as another text, or by another reader as another thing
    unreadable,  ///< the file, or this part of it, cannot be read back: before a save, a question
    unsaved      ///< the configuration is not saved
};

struct Fault {
    FaultKind kind = FaultKind::none;
    /// What is wrong and what comes of it, one line for a tooltip; empty without a fault:
    ///
    ///     '&': the OPC server cannot read a file that holds this
    ///     '€': saved as "?"
    std::string text;
};

/// The gravest fault of a text, and the first of its kind. Letter case is no fault, though branch
/// names are read back in capitals. Raises nothing; takes time by the length of the text.
Fault faultOf(std::string_view text, FilePlace place);

/// What reading makes of a text that was saved there, if it can be read.
std::string asRead(std::string_view text, FilePlace place);

/// True for what is written to the file: all but the root and the bare node of a dropped device
/// below which there is no branch and no item.
bool isSaved(const Node& node);

/// What is read and saved at most: branches within one another in a device, bytes of a key, and
/// bytes of all keys together. Keys are paths: without bounds, the memory for them grows with the
/// square of a file. All keys: 2 KB for each of the 65,536 group addresses of a bus.
inline constexpr std::size_t mostBranchLevels = 1000;
inline constexpr std::size_t mostKeyBytes = 64UL * 1024;
inline constexpr std::size_t mostBytesOfAllKeys = 128UL * 1024 * 1024;

/// The rules for one document as it is now. What takes a look at the whole of it is worked out when
/// it is first asked for after a change, in one walk.
///
///     const FileRules rules(document);
///     const Fault sign = rules.faultOf(node);
///     if (const auto refusal = rules.refusal()) throw refusal->error;
class FileRules {
 public:
    explicit FileRules(const Document& document) : document_(document) {}

    /// The sign of a node that is shown in the tree: the gravest fault of its name, where it
    /// stands, and of what its record holds. What is out of sight bears its sign on the bare node
    /// that stands for it and on the root; the global settings bear theirs on the root.
    Fault faultOf(const Node& node) const;
    /// That of a cell of the list: of a name where it stands in the tree, or of another text.
    Fault faultOf(const ListView::Row& row, std::size_t column) const;

    /// Something in the way of a save.
    struct Refusal {
        RunTimeError error;           ///< names it
        const Node* shown = nullptr;  ///< the node in the tree that bears its sign
    };
    /// The first thing that was found for which the configuration is not saved.
    std::optional<Refusal> refusal() const;

    /// Texts that would be saved and could not be read back.
    struct Unreadable {
        std::size_t count = 0;
        std::string firstPath;        ///< of the first in the file's order
        const Node* shown = nullptr;  ///< the node in the tree that bears its sign
    };
    Unreadable unreadable() const;

 private:
    /// Why a node is not saved: a predicate, or another node that has its key when read back.
    struct Reason {
        const char* predicate = nullptr;
        const Node* namesake = nullptr;
    };
    /// What was found of the whole document.
    struct Survey {
        std::unordered_map<const Node*, Reason> unsaved;
        const Node* first = nullptr;                       ///< of these
        std::unordered_map<SharedText, Fault> outOfSight;  ///< the gravest in each such device
        bool isAnyNameUnreadable = false;
        std::optional<RunTimeError> leftOut;  ///< a record that would be in no file
    };
    class Surveyor;

    const Survey& survey() const;
    Fault faultOf(const Node& node, const Survey& survey) const;
    static Fault faultOfName(const Node& node, const Survey& survey);
    bool isAnyUnreadable() const;
    const Node* shownFor(const Node& node) const;

    const Document& document_;
    mutable Survey survey_;
    mutable std::optional<std::array<std::uint64_t, 3>> surveyed_;  // the counts of changes then
};
