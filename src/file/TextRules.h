// Which texts a configuration file can hold. Texts are written without escaping, one byte for each
// character (ISO-8859-1). So a file with some texts cannot be read, and some texts are read back as
// others.
//
// What XML allows: https://www.w3.org/TR/xml/ (XML 1.0, fifth edition), productions [4] and [4a]
// of names, [10] of attributes, [14] of character data, [2] of characters, and 2.11 and 3.3.3 of
// how line ends and blanks are read; https://www.w3.org/TR/xml-names/ of colons in names.
#pragma once

#include <string>
#include <string_view>

/// The place of a text in the file.
enum class FilePlace {
    nowhere,      ///< not saved: the text of the root
    elementName,  ///< the name of a branch
    content,      ///< the texts of an item: name, comment, address, ...
    attribute  ///< the texts of a device or the settings, in quotation marks: name, port, EDI type
};

/// What a fault causes. The values are in order of severity, the most serious last.
enum class FaultKind {
    none,
    changed,     ///< saved, but read back as another text, or in another way by other readers
    unreadable,  ///< the file, or this part of it, cannot be read back; the user is asked before a
                 ///< save
    unsaved      ///< the configuration is not saved
};

struct Fault {
    FaultKind kind = FaultKind::none;
    /// The cause and the effect, in one line for a tooltip; empty without a fault:
    ///
    ///     '&': the OPC server cannot read a file that holds this
    ///     '€': saved as "?"
    std::string text;
};

/// Returns the most serious fault of a text, and the first one of that kind. Branch names are read
/// back in upper case; that is not a fault. Raises nothing. The time is linear in the length.
///
///     const Fault fault = faultOf("Light & Blind", FilePlace::content);
///     if (fault.kind == FaultKind::unreadable) showTooltip(fault.text);
///     asRead("Hall\r\n", FilePlace::content);  // "Hall\n"
Fault faultOf(std::string_view text, FilePlace place);

/// True if the kind of faultOf() is FaultKind::unreadable. Faster than faultOf().
bool isUnreadable(std::string_view text, FilePlace place);

/// Returns the text that a reader gets for a text that was saved in that place. The text must be
/// readable.
std::string asRead(std::string_view text, FilePlace place);

/// Properties of a text that one fast scan finds, eight bytes at a time.
struct TextTraits {
    bool hasSpecial;  ///< contains a control character, "<", ">", "&" or a quotation mark
    bool isAscii;
    bool hasPoint;  ///< contains "."

    /// True if the text has no fault as content or attribute and is read back unchanged. False does
    /// not mean the contrary.
    bool isReadUnchanged() const { return !hasSpecial && isAscii; }
};
TextTraits traitsOf(std::string_view text);
