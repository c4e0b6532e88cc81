#include "base/Text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <utility>

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

constexpr std::uint64_t everyByte(std::uint64_t byte) { return byte * 0x0101010101010101U; }

bool isAsciiBlock(std::uint64_t bytes) { return (bytes & everyByte(0x80)) == 0; }

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

/// Removes the digits at the beginning of the text. Returns them without leading zeros.
std::string_view takeNumber(std::string_view& text) {
    const auto digits = text.substr(0, std::min(text.size(), text.find_first_not_of("0123456789")));
    text.remove_prefix(digits.size());
    return digits.substr(std::min(digits.size(), digits.find_first_not_of('0')));
}

/// Removes the first character of the text. Returns its base letter.
char32_t takeBaseLetter(std::string_view& text) {
    std::size_t length = 0;
    const char32_t letter = baseLetter(nextCharacter(text, length));
    text.remove_prefix(length);
    return letter;
}

/// Returns the number of ASCII characters at the beginning of the text.
std::size_t asciiLength(std::string_view text) {
    std::size_t i = 0;
    for (std::uint64_t block = 0; text.size() - i >= sizeof block; i += sizeof block) {
        std::memcpy(&block, text.data() + i, sizeof block);
        if (!isAsciiBlock(block)) break;
    }
    const auto rest = text.substr(i);
    return i + static_cast<std::size_t>(std::ranges::find_if_not(rest, isAscii) - rest.begin());
}

/// True when texts of the same size differ in nothing but case.
bool haveEqualLetters(std::string_view a, std::string_view b) {
    for (std::size_t i = 0; i != a.size();) {
        std::size_t j = i;
        // U+FFFD itself is longer than a byte that counts as one.
        if (upper(nextCharacter(a, i)) != upper(nextCharacter(b, j)) || i != j) return false;
    }
    return true;
}

}  // namespace

char32_t nextCharacter(std::string_view text, std::size_t& position) {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) return lead;
    const auto length = static_cast<std::size_t>(std::countl_one(lead));
    const auto others = text.substr(position, length - 1);
    auto c = static_cast<char32_t>(lead & (0xFFU >> length));
    for (const char next : others) {
        if ((static_cast<unsigned char>(next) & 0xC0) != 0x80) return replacement;
        c = (c << 6) | (static_cast<unsigned char>(next) & 0x3FU);
    }
    // Overlong forms, surrogates and numbers above U+10FFFF are not valid UTF-8. An overlong form
    // could hide a "<". When bytes are missing at the end of the text, the number is too small too.
    static constexpr char32_t none = 0xFFFFFFFF;
    static constexpr auto smallest =  // by length
        std::to_array<char32_t>({none, none, 0x80, 0x800, 0x10000, none, none, none, none});
    if (c < smallest.at(length) || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) return replacement;
    position += others.size();
    return c;
}

void appendUpperCase(std::string& out, std::string_view text) {
    for (std::size_t i = 0; i != text.size();) {
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
    return a == b || (a.size() == b.size() && haveEqualLetters(a, b));
}

std::uint32_t hashIgnoringCase(std::string_view text) {
    // Hashes up to eight ASCII characters at a time, else one character. Texts that differ only in
    // case are split at the same places.
    static const HashSecrets secrets;
    std::uint64_t hash = secrets.start ^ text.size();
    while (!text.empty()) {
        std::uint64_t block = 0;
        std::size_t length = std::min(text.size(), sizeof block);
        std::memcpy(&block, text.data(), length);
        if (isAsciiBlock(block)) {
            block = upperAscii(block);
        } else {
            length = 0;
            block = upper(nextCharacter(text, length));
        }
        hash = mixed(hash ^ block, secrets.factor);
        text.remove_prefix(length);
    }
    return static_cast<std::uint32_t>(hash ^ (hash >> 32U));
}

bool alphabeticallyBefore(std::string_view a, std::string_view b) {
    // Skip the equal beginning, which names of one kind often have. Go back to the beginning of a
    // number or a character, so that these are compared as a whole.
    const auto end = std::make_reverse_iterator(std::ranges::mismatch(a, b).in1);
    const auto start =
        std::find_if(end, a.rend(), [](char c) { return isAscii(c) && !isDigit(c); });
    const auto equal = static_cast<std::size_t>(a.rend() - start);
    std::string_view x = a.substr(equal);
    std::string_view y = b.substr(equal);
    auto order = std::strong_ordering::equal;
    while (std::is_eq(order) && !x.empty() && !y.empty()) {
        if (isDigit(x.front()) && isDigit(y.front())) {
            const std::string_view first = takeNumber(x);
            const std::string_view second = takeNumber(y);
            order = std::pair(first.size(), first) <=> std::pair(second.size(), second);
        } else {
            order = takeBaseLetter(x) <=> takeBaseLetter(y);
        }
    }
    if (std::is_eq(order)) order = x.size() <=> y.size();
    if (std::is_eq(order)) order = a <=> b;
    return std::is_lt(order);
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
    constexpr std::size_t half = 30;
    std::size_t count = 0;
    for (std::size_t i = 0; i != text.size(); ++count)
        nextCharacter(text, i);
    if (count <= 2 * half) return std::string(text);
    std::size_t head = 0;
    std::size_t tail = 0;
    for (std::size_t i = 0; i != count - half + 1; ++i) {
        nextCharacter(text, tail);
        if (i < half) head = tail;
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
