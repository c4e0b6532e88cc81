// Which texts spoil the saved file. A configuration is written as its texts stand: nothing is
// escaped, and a character is one byte (ISO-8859-1). So some texts, though the editor holds them
// well, make a file that the OPC server cannot read, or come back as others.
//
// What XML allows: https://www.w3.org/TR/xml/ (XML 1.0, fifth edition), productions [4] and [4a]
// of names, [10] of attributes, [14] of character data, [2] of characters, and 2.11 and 3.3.3 of
// how line ends and blanks are read.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "model/ConfigTree.h"

/// Where in the file a text stands.
enum class FilePlace {
    nowhere,      ///< the root's text
    elementName,  ///< a branch's name
    content,      ///< what an item holds: name, comment, address, ...
    attribute     ///< what a device holds, in quotation marks: name, port, EDI type
};

/// Nothing when the file carries the text faithfully; else one line for a tooltip that says what
/// in the text is wrong and what comes of it, e.g.
///
///     '&': the OPC server cannot read a file that holds this
///     '€': saved as "?"
///
/// The gravest fault, and the first of its kind. Letter case is no fault, though branch names are
/// read back in capitals. Raises nothing; takes time by the length of the text.
std::string spoilsFile(std::string_view text, FilePlace place);

/// Where the file holds what a row of the list shows of a node with that tag (see tagOf).
FilePlace filePlaceOf(std::string_view tag);

/// The same for the name of a node where it stands in the tree: also that a neighbour has the same
/// name once branches are read back in capitals, or that what stands there cannot be saved.
std::string spoilsFile(const Node& node, const ConfigTree& tree);

/// True for what is written to the file: all but the root and the bare node of a dropped device
/// below which there is no branch and no item.
bool isSaved(const Node& node);

/// What is read and saved at most: branches within one another in a device, and bytes of a key.
/// Keys are paths: without bounds, the memory for them grows with the square of a file's depth.
inline constexpr std::size_t mostBranchLevels = 1000;
inline constexpr std::size_t mostKeyBytes = 64UL * 1024;
