#include "base/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <random>

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

constexpr std::uint64_t everyByte(std::uint64_t byte) { return byte * 0x0101010101010101U; }

char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Returns the character in upper case; the header says which characters have an upper case.
char32_t upper(char32_t c) {
    if (c < 0x80) return static_cast<char32_t>(upperAscii(static_cast<char>(c)));
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return c - 0x20;  // à to þ, but not the sign ÷
    switch (c) {
        case 0x153: return 0x152;  // œ
        case 0x161: return 0x160;  // š
        case 0x17E: return 0x17D;  // ž
        default: return c;
    }
}

/// Returns the character in upper case and without accent, for alphabetical order. Removes accents
/// from the letters of ISO-8859-1 and Windows-1252.
char32_t baseLetter(char32_t c) {
    c = upper(c);
    if (c < 0xC0) return c;
    if (c <= 0xDF) {
        static constexpr std::string_view bases = "AAAAAAACEEEEIIIIDNOOOOO*OUUUUYTS";
        return c == 0xD7 ? c : static_cast<char32_t>(bases[c - 0xC0]);
    }
    switch (c) {
        case 0xFF:
        case 0x178: return U'Y';
        case 0x152: return U'O';
        case 0x160: return U'S';
        case 0x17D: return U'Z';
        default: return c;
    }
}

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

/// Returns the first eight bytes of the text, if it has that many and all are ASCII.
std::optional<std::uint64_t> asciiBlock(std::string_view text) {
    std::uint64_t bytes = 0;
    if (text.size() < sizeof bytes) return std::nullopt;
    std::memcpy(&bytes, text.data(), sizeof bytes);
    if ((bytes & everyByte(0x80)) != 0) return std::nullopt;
    return bytes;
}

/// Returns the bytes of a text shorter than eight bytes, and their number in the top byte, if all
/// are ASCII.
std::optional<std::uint64_t> asciiEnd(std::string_view text) {
    std::uint64_t bytes = 0;
    if (text.size() >= sizeof bytes) return std::nullopt;
    for (const char c : text)
        bytes = bytes << 8U | static_cast<unsigned char>(c);
    if ((bytes & everyByte(0x80)) != 0) return std::nullopt;
    return bytes | std::uint64_t{text.size()} << 56U;
}

/// Returns eight ASCII characters in upper case.
std::uint64_t upperAscii(std::uint64_t block) {
    const std::uint64_t fromA = block + everyByte(0x80 - 'a');       // top bit: not before "a"
    const std::uint64_t afterZ = block + everyByte(0x80 - 'z' - 1);  // top bit: after "z"
    const std::uint64_t lower = fromA & ~afterZ & everyByte(0x80);
    return block - (lower >> 2U);
}

/// Random numbers of this process. Without knowing them, nobody can make a file in which all names
/// have the same hash.
struct HashSecrets {
    std::uint64_t start = random();
    std::uint64_t factor = random() | 1U;

 private:
    static std::uint64_t random() {
        std::random_device device;
        const std::uint64_t high = device();
        return high << 32U | device();
    }
};

/// Multiplies to 128 bits and folds the product to 64 bits, so that each bit of both numbers
/// affects all bits of the result. Source: wyhash for 32-bit machines
/// (https://github.com/wangyi-fudan/wyhash).
std::uint64_t mixed(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t aLow = a & 0xFFFFFFFFU;
    const std::uint64_t bLow = b & 0xFFFFFFFFU;
    const std::uint64_t aHigh = a >> 32U;
    const std::uint64_t bHigh = b >> 32U;
    return std::rotl(aHigh * bLow, 32) ^ (aHigh * bHigh) ^ std::rotl(aLow * bHigh, 32) ^
           (aLow * bLow);
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Returns the digits from `position` on without leading zeros, and moves `position` after them.
std::string_view takeNumber(std::string_view text, std::size_t& position) {
    while (position < text.size() && text[position] == '0')
        ++position;
    const std::size_t start = position;
    while (position < text.size() && isDigit(text[position]))
        ++position;
    return text.substr(start, position - start);
}

/// Returns the number of ASCII characters at the beginning of the text.
std::size_t asciiLength(std::string_view text) {
    std::size_t i = 0;
    for (std::uint64_t block = 0; text.size() - i >= sizeof block; i += sizeof block) {
        std::memcpy(&block, text.data() + i, sizeof block);
        if ((block & everyByte(0x80)) != 0) break;
    }
    while (i < text.size() && isAscii(text[i]))
        ++i;
    return i;
}

/// Returns the number of continuation bytes after a lead byte; 0 for any other byte.
std::size_t continuationBytes(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return 1;
    if (lead >= 0xE0 && lead <= 0xEF) return 2;
    if (lead >= 0xF0 && lead <= 0xF4) return 3;
    return 0;
}

}  // namespace

char32_t nextCharacter(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) return lead;
    const std::size_t count = continuationBytes(lead);
    if (count == 0 || position + count > text.size()) return replacement;
    auto c = static_cast<char32_t>(lead & (0x3FU >> count));
    for (std::size_t i = 0; i < count; ++i) {
        const auto next = static_cast<unsigned char>(text[position + i]);
        if ((next & 0xC0) != 0x80) return replacement;
        c = (c << 6) | (next & 0x3FU);
    }
    // Overlong forms, surrogates and numbers above U+10FFFF are not valid UTF-8. An overlong form
    // could hide a "<".
    const bool wellFormed = count == 1 ||
                            (count == 2 && c >= 0x800 && (c < 0xD800 || c > 0xDFFF)) ||
                            (count == 3 && c >= 0x10000 && c <= 0x10FFFF);
    if (!wellFormed) return replacement;
    position += count;
    return c;
}

void appendUpperCase(std::string& out, std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        if (isAscii(text[i])) {
            out += upperAscii(text[i++]);
            continue;
        }
        const std::size_t start = i;
        const char32_t c = nextCharacter(text, i);
        if (c == replacement) {
            out.append(text.substr(start, i - start));
        } else {
            appendUtf8(out, upper(c));
        }
    }
}

std::string upperCase(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    appendUpperCase(out, text);
    return out;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    // A change of case never changes the length. Most compared texts are equal byte by byte.
    if (a.size() != b.size()) return false;
    if (a == b) return true;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (isAscii(a[i]) && isAscii(b[j])) {
            if (upperAscii(a[i++]) != upperAscii(b[j++])) return false;
        } else if (upper(nextCharacter(a, i)) != upper(nextCharacter(b, j))) {
            return false;
        }
    }
    return i == j;
}

std::uint32_t hashIgnoringCase(std::string_view text) {
    // Hashes eight ASCII characters at a time, or fewer at the end, else one character. Texts that
    // differ only in case are split at the same places.
    static const HashSecrets secrets;
    std::uint64_t hash = secrets.start;
    for (std::size_t i = 0; i < text.size();) {
        if (const auto block = asciiBlock(text.substr(i))) {
            hash = mixed(hash ^ upperAscii(*block), secrets.factor);
            i += sizeof *block;
        } else if (const auto end = asciiEnd(text.substr(i))) {
            hash = mixed(hash ^ upperAscii(*end), secrets.factor);
            break;
        } else {
            hash = mixed(hash ^ upper(nextCharacter(text, i)), secrets.factor);
        }
    }
    return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
}

bool alphabeticallyBefore(std::string_view a, std::string_view b) {
    // Skip the equal beginning, which names of one kind often have. Go back to the first digit of a
    // number, so that numbers are compared as a whole.
    const auto shortest = std::min(a.size(), b.size());
    std::size_t i = 0;
    while (i < shortest && a[i] == b[i] && isAscii(a[i]))
        ++i;
    while (i > 0 && isDigit(a[i - 1]))
        --i;
    std::size_t j = i;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const std::string_view x = takeNumber(a, i);
            const std::string_view y = takeNumber(b, j);
            if (x.size() != y.size()) return x.size() < y.size();
            if (x != y) return x < y;
        } else {
            const char32_t x = baseLetter(nextCharacter(a, i));
            const char32_t y = baseLetter(nextCharacter(b, j));
            if (x != y) return x < y;
        }
    }
    if (i < a.size() || j < b.size()) return i == a.size();
    return a < b;
}

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string trimBlanks(std::string_view text) { return std::string(withoutBlanks(text)); }

void appendLatin1(std::string& out, std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t ascii = asciiLength(text.substr(i));
        out.append(text, i, ascii);
        i += ascii;
        if (i == text.size()) break;
        const char32_t c = nextCharacter(text, i);
        out += c <= 0xFF ? static_cast<char>(c) : '?';
    }
}

std::string shortened(std::string_view text) {
    constexpr int maxCharacters = 60;
    std::size_t head = 0;
    std::size_t end = 0;
    for (int count = 0; count < maxCharacters && end < text.size(); ++count) {
        nextCharacter(text, end);
        if (count < maxCharacters / 2) head = end;
    }
    if (end == text.size()) return std::string(text);
    const auto isContinuation = [&](std::size_t place) {
        return (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80;
    };
    std::size_t tail = text.size();
    for (int count = 1; count < maxCharacters / 2; ++count) {
        do {
            --tail;
        } while (tail > head && isContinuation(tail));
        if (tail <= head) break;
    }
    return std::string(text.substr(0, head)).append("\u2026").append(text.substr(tail));
}

std::string fromWindows1252(std::string_view bytes) {
    static constexpr std::array<char16_t, 32> from80{
        0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        appendUtf8(text, code >= 0x80 && code <= 0x9F ? from80.at(code - 0x80U) : code);
    }
    return text;
}
