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

/// Where in the file a text stands.
enum class FilePlace {
    nowhere,      ///< the root's text
    elementName,  ///< a branch's name
    itemName,     ///< an item's name
    content,      ///< what else an item holds: comment, address, ...
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

/// Where the file holds the name of a node with that tag (see tagOf) or, from the second column of
/// its row on, what else the row shows.
FilePlace filePlaceOf(std::string_view tag, std::size_t column = 0);
