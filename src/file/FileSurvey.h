// Finds the nodes of a document that could not be saved and read back: two nodes may have the same
// key after reading, and there are limits on keys and on the depth of branches.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "base/RunTimeError.h"
#include "file/TextRules.h"
#include "model/Document.h"

/// Limits of what is read and saved: nested branches in a device, bytes of one key, and bytes of
/// all keys together. Keys are paths, so without limits their memory would grow with the square of
/// the file size. All keys together: 2 KB for each of the 65,536 group addresses of a bus.
inline constexpr std::size_t maxBranchDepth = 1000;
inline constexpr std::size_t maxKeyBytes = 64UL * 1024;
inline constexpr std::size_t maxBytesOfAllKeys = 128UL * 1024 * 1024;

/// True if the node is written to the file. False only for the root, and for the bare node of a
/// dropped device without any branch or item below it.
bool isSaved(const Node& node);

/// The place in the file of the name of such a node.
FilePlace filePlaceOf(NodeKind kind);
FilePlace filePlaceOfName(const Node& node);

/// The path of a node, shortened for a message.
std::string pathForMessage(const Node& node);

/// The result of one walk over all nodes that a save writes.
///
///     const FileSurvey survey = surveyOf(document);
///     if (survey.first != nullptr) show(survey.unsaved.at(survey.first).text());
struct FileSurvey {
    /// Why a node cannot be saved: a fixed text, or another node that has its key after reading.
    struct Reason {
        const char* predicate = nullptr;  ///< such as "stands below no device"
        const Node* namesake = nullptr;

        /// The reason as a predicate for a message.
        std::string text() const;
    };

    std::unordered_map<const Node*, Reason> unsaved;
    const Node* first = nullptr;                ///< the one of these that was found first
    bool isAnyNameUnreadable = false;           ///< see FaultKind::unreadable
    std::optional<RunTimeError> missingRecord;  ///< set if a record would not be in the file
};

/// Walks the document once. The time is linear in the number of nodes and the length of their keys.
FileSurvey surveyOf(const Document& document);
