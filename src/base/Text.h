// Text is UTF-8 in memory. What the rules ask of its letters stands here.
//
// Letter case is that of the characters which the editor's files can hold (ISO-8859-1 and
// Windows-1252); any other character has only one case here. Changing case never changes the
// number of bytes of a text: so "ß", "ÿ" and "µ", whose capitals are no single characters of
// ISO-8859-1, stay as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The character (code point) that begins at `position`, which is moved past it. A byte that
/// begins no well-formed UTF-8 character counts as one character, U+FFFD.
char32_t nextCharacter(std::string_view text, std::size_t& position);

/// The text in capitals.
std::string upperCase(std::string_view text);

/// Appends the text in capitals to `out`.
void appendUpperCase(std::string& out, std::string_view text);

/// True when both texts are the same but for letter case.
bool equalIgnoringCase(std::string_view a, std::string_view b);

/// A hash that is equal for texts which are equal ignoring case. It is another one in each run of
/// the program.
std::uint32_t hashIgnoringCase(std::string_view text);

/// True when `a` comes before `b` in an alphabetical list: letters of either case and with or
/// without accents stand together ("ä" with "a"), and digits that follow each other are a number
/// ("Light2" before "Light10"). Texts that differ in nothing else are ordered by their bytes, so
/// that the order is the same on every machine.
bool alphabeticallyBefore(std::string_view a, std::string_view b);

/// The text without leading and trailing blanks.
std::string trimBlanks(std::string_view text);
/// The same, as a part of the text that is given.
std::string_view withoutBlanks(std::string_view text);

/// A name or a path as a message shows it: of more than 60 characters, those in the middle are left
/// out for an ellipsis.
std::string shortened(std::string_view text);

/// The UTF-8 of a text in the code page Windows-1252. The five bytes that it leaves undefined
/// become the control characters of the same numbers, as Windows has it
/// (https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/WindowsBestFit/bestfit1252.txt).
std::string fromWindows1252(std::string_view bytes);

/// Appends `text` to `out` one byte a character (ISO-8859-1); a character that the code page
/// does not have becomes "?".
void appendLatin1(std::string& out, std::string_view text);
