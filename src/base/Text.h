// Functions for text, which is UTF-8 in memory: characters, case, order and encodings.
//
// Only the characters that the editor's files can contain (ISO-8859-1 and Windows-1252) have upper
// and lower case here. Changing case never changes the number of bytes of a text: "ß", "ÿ" and "µ",
// whose upper case is not one character of ISO-8859-1, are not changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Returns the character (code point) at `position`, and moves `position` after it. A byte that
/// does not begin a well-formed UTF-8 character counts as one character, U+FFFD.
char32_t nextCharacter(std::string_view text, std::size_t& position);

/// Returns the text in upper case.
std::string upperCase(std::string_view text);

/// Appends the text in upper case to `out`.
void appendUpperCase(std::string& out, std::string_view text);

/// True when the texts differ in nothing but case.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// Returns a hash that is equal for texts that are equal ignoring case. It is different in each run
/// of the program.
std::uint32_t hashIgnoringCase(std::string_view text);

/// True when `a` comes before `b` in an alphabetical list. Case and accents are ignored ("ä" is
/// sorted as "a"), and consecutive digits are compared as a number ("Light2" before "Light10").
/// Texts that differ in nothing else are ordered by their bytes. The order is the same on every
/// machine.
bool alphabeticallyBefore(std::string_view a, std::string_view b);

/// Returns the text without leading and trailing blanks.
std::string trimBlanks(std::string_view text);
/// The same as a view of `text`.
std::string_view withoutBlanks(std::string_view text);

/// Returns a name or a path for a message. When it has more than 60 characters, an ellipsis
/// replaces those in the middle.
std::string shortened(std::string_view text);

/// Converts a text from the code page Windows-1252 to UTF-8. Its five undefined bytes become the
/// control characters with the same numbers, as on Windows
/// (https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WindowsBestFit/bestfit1252.txt).
std::string fromWindows1252(std::string_view bytes);

/// Appends `text` to `out` in ISO-8859-1, one byte for each character. A character that ISO-8859-1
/// does not have becomes "?".
void appendLatin1(std::string& out, std::string_view text);
