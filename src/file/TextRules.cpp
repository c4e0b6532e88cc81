#include "file/TextRules.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "base/Text.h"

namespace {

const std::string unreadable = "the OPC server cannot read a file that holds this";

bool isOneOf(char32_t c, std::u32string_view characters) {
    return characters.find(c) != std::u32string_view::npos;
}

bool isBetween(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

/// True if a name can start with this character. Only characters of ISO-8859-1 count: any other is
/// saved as "?", which no name can contain. A colon does not count: the file would have to declare
/// the prefix before it.
bool isNameStart(char32_t c) {
    return isBetween(c, 'A', 'Z') || isBetween(c, 'a', 'z') || c == '_' ||
           (isBetween(c, 0xC0, 0xFF) && c != 0xD7 && c != 0xF7);
}

bool isNameCharacter(char32_t c) {
    return isNameStart(c) || isBetween(c, '0', '9') || isOneOf(c, U"-.\u00B7");
}

/// A character in the form for a message. `bytes` is its UTF-8.
std::string printable(char32_t c, std::string_view bytes) {
    if (c < 0x20 || isBetween(c, 0x7F, 0xA0)) {
        static constexpr std::string_view digits = "0123456789ABCDEF";
        return std::string("U+00") + digits[c >> 4U] + digits[c & 0xFU];
    }
    return "'" + std::string(c == 0xFFFD ? "\uFFFD" : bytes) +
           "'";  // a byte that is not UTF-8 cannot be shown
}

Fault faultOfElementName(std::string_view name) {
    if (name.empty()) {
        return {FaultKind::unreadable, "A branch without a name: " + unreadable};
    }
    std::string colon;
    for (std::size_t end = 0; end < name.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(name, end);
        if (start == 0 ? isNameStart(c) : isNameCharacter(c)) continue;
        const std::string what = printable(c, name.substr(start, end - start)) +
                                 (isNameCharacter(c) ? " at the start of" : " in") +
                                 " a branch name: ";
        if (c != ':') return {FaultKind::unreadable, what + unreadable};
        if (colon.empty()) colon = what;
    }
    if (!colon.empty()) {
        return {FaultKind::unreadable,
                colon + "readers that know namespaces cannot read a file that holds this"};
    }
    // The file uses these element names itself, for an item and for the contents of a device.
    const std::string asBranch = "'" + std::string(name) + "' as a branch name: ";
    if (equalIgnoringCase(name, "tag")) {
        return {FaultKind::unreadable, asBranch + "read back as an item, without what it holds"};
    }
    if (equalIgnoringCase(name, "tags")) {
        return {FaultKind::changed,
                asBranch + "read back here, but another reader may take it for something else"};
    }
    return {};
}

/// The fault of a character in an attribute or in content.
std::pair<FaultKind, std::string_view> consequence(char32_t c, FilePlace place) {
    const bool isLineEndOrTab = isOneOf(c, U"\t\n\r");
    const bool isInAttribute = place == FilePlace::attribute;
    if ((c < 0x20 && !isLineEndOrTab) || c == '<' || c == '&' || (isInAttribute && c == '"')) {
        return {FaultKind::unreadable, unreadable};
    }
    if (c > 0xFF) return {FaultKind::changed, "saved as \"?\""};
    if (isInAttribute && isLineEndOrTab) return {FaultKind::changed, "read back as a blank"};
    if (c == '\r') return {FaultKind::changed, "read back as a line feed"};
    return {};
}

/// True if all characters are in ISO-8859-1.
bool isLatin1(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x80) continue;
        const bool isLead = byte == 0xC2 || byte == 0xC3;
        if (!isLead || ++i == text.size()) return false;
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80) return false;
    }
    return true;
}

Fault faultOfText(std::string_view text, FilePlace place) {
    const TextTraits traits = traitsOf(text);
    if (!traits.hasSpecial && (traits.isAscii || isLatin1(text))) return {};
    if (place == FilePlace::content && text.find("]]>") != std::string_view::npos) {
        return {FaultKind::unreadable, "']]>': " + unreadable};
    }
    Fault worst;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(text, end);
        const auto [kind, what] = consequence(c, place);
        if (kind <= worst.kind) continue;
        worst = {kind, printable(c, text.substr(start, end - start)) + ": " + std::string(what)};
    }
    return worst;
}

}  // namespace

TextTraits traitsOf(std::string_view text) {
    const auto every = [](std::uint64_t byte) { return byte * 0x0101010101010101U; };
    const auto zeroBytes = [&](std::uint64_t word) { return (word - every(1)) & ~word; };
    std::uint64_t special = 0;
    std::uint64_t all = 0;
    std::uint64_t point = 0;
    const auto look = [&](std::uint64_t word) {
        all |= word;
        special |= (word - every(0x20)) & ~word;               // less than a blank
        special |= zeroBytes((word | every(2)) ^ every('>'));  // < and >
        special |= zeroBytes((word | every(4)) ^ every('&'));  // " and &
        point |= zeroBytes(word ^ every('.'));
    };
    const auto load = [&]<typename Word>(std::size_t at, Word word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        return word;
    };
    // Eight bytes at a time. The last eight may overlap those before.
    const std::size_t size = text.size();
    if (size >= 8) {
        for (std::size_t i = 0; i + 8 < size; i += 8)
            look(load(i, std::uint64_t{}));
        look(load(size - 8, std::uint64_t{}));
    } else if (size >= 4) {
        look(std::uint64_t{load(0, std::uint32_t{})} << 32U | load(size - 4, std::uint32_t{}));
    } else {
        std::uint64_t word = every(' ');
        for (const char c : text)
            word = word << 8U | static_cast<unsigned char>(c);
        look(word);
    }
    const auto isAny = [&](std::uint64_t bytes) { return (bytes & every(0x80)) != 0; };
    return {isAny(special), !isAny(all), isAny(point)};
}

Fault faultOf(std::string_view text, FilePlace place) {
    if (place == FilePlace::nowhere) return {};
    return place == FilePlace::elementName ? faultOfElementName(text) : faultOfText(text, place);
}

bool isUnreadable(std::string_view text, FilePlace place) {
    if (place != FilePlace::elementName && !traitsOf(text).hasSpecial) return false;
    return faultOf(text, place).kind == FaultKind::unreadable;
}

std::string asRead(std::string_view text, FilePlace place) {
    std::string read;
    read.reserve(text.size());
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(text, end);
        const bool isLineEnd = c == '\r' || c == '\n';
        if (c == '\r' && end < text.size() && text[end] == '\n') ++end;
        if (c > 0xFF) {
            read += '?';
        } else if (place == FilePlace::attribute && (isLineEnd || c == '\t')) {
            read += ' ';
        } else if (isLineEnd) {
            read += '\n';
        } else {
            read.append(text.substr(start, end - start));
        }
    }
    return place == FilePlace::elementName ? upperCase(read) : read;
}
