#include "base/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "base/RunTimeError.h"

namespace {

constexpr std::string_view blanks = " \t\r\n";

/// Removes the digits at the beginning of the text. Returns how many there were.
std::size_t skipDigits(std::string_view& text) {
    const auto count = std::min(text.size(), text.find_first_not_of("0123456789"));
    text.remove_prefix(count);
    return count;
}

/// Returns the length of the unsigned decimal number at the beginning of the text; 0 when there is
/// none.
std::size_t numberLength(std::string_view text) {
    std::string_view rest = text;
    std::size_t digits = skipDigits(rest);
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        digits += skipDigits(rest);
    }
    if (digits == 0) return 0;
    std::string_view exponent = rest;
    if (rest.starts_with('e') || rest.starts_with('E')) {
        exponent.remove_prefix(1);
        if (exponent.starts_with('+') || exponent.starts_with('-')) exponent.remove_prefix(1);
        if (skipDigits(exponent) > 0) rest = exponent;
    }
    return text.size() - rest.size();
}

/// The number at the beginning of a text, after blanks: its sign, and its characters after the
/// sign. `digits` is empty when there is no number.
struct SignedNumber {
    bool negative = false;
    std::string_view digits;
};

SignedNumber numberIn(std::string_view text) {
    const auto start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) return {};
    text.remove_prefix(start);
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+') text.remove_prefix(1);
    return {negative, text.substr(0, numberLength(text))};
}

/// For a number out of the range of double: true when it is too large, false when it is too small.
bool isHuge(std::string_view number) {
    const auto end = std::min(number.find_first_of("eE"), number.size());
    const auto point = static_cast<long>(std::min(number.find('.'), end));
    const auto firstDigit = static_cast<long>(number.find_first_of("123456789"));
    long exponent = 0;
    if (end < number.size()) {
        constexpr long beyondAnyText = std::numeric_limits<long>::max() / 4;
        const bool negative = number[end + 1] == '-';
        const auto digits = number.substr(number.find_first_of("0123456789", end));
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (result.ec != std::errc()) exponent = beyondAnyText;
        exponent = std::min(exponent, beyondAnyText);
        if (negative) exponent = -exponent;
    }
    return point - firstDigit + exponent > 0;
}

/// Rounds halves to even. Does not depend on the rounding mode of the process.
double roundHalvesToEven(double number) {
    const double below = std::floor(number);
    const double fraction = number - below;
    if (fraction < 0.5) return below;
    if (fraction > 0.5) return below + 1;
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

template <typename Integer>
Integer roundTo(double number) {
    const double rounded = roundHalvesToEven(number);
    if (!(rounded >= std::numeric_limits<Integer>::min() &&
          rounded <= std::numeric_limits<Integer>::max())) {
        throw RunTimeError(ErrorNumber::overflow);
    }
    return static_cast<Integer>(rounded);
}

}  // namespace

double leadingNumber(std::string_view text) {
    const auto [negative, digits] = numberIn(text);
    double number = 0;  // stays 0 when there is none
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        number = isHuge(digits) ? std::numeric_limits<double>::infinity() : 0;
    }
    return negative ? -number : number;
}

bool isNumber(std::string_view text) {
    const auto digits = numberIn(text).digits;
    if (digits.empty()) return false;
    const auto end = static_cast<std::size_t>(digits.data() + digits.size() - text.data());
    return text.find_first_not_of(blanks, end) == std::string_view::npos;
}

std::string plainDecimal(double number) {
    std::array<char, 512> digits{};  // the longest double has 309 before its point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed);
    return {digits.data(), end.ptr};
}

std::string withThousandsSeparators(std::size_t number) {
    std::string digits = std::to_string(number);
    for (auto place = digits.size(); place > 3; digits.insert(place, ","))
        place -= 3;
    return digits;
}

std::int16_t readInt16(std::string_view text) { return roundTo<std::int16_t>(leadingNumber(text)); }

std::int32_t readInt32(std::string_view text) { return roundTo<std::int32_t>(leadingNumber(text)); }

std::int32_t roundToInt32(double number) { return roundTo<std::int32_t>(number); }

void countUp(std::int16_t& counter) {
    if (counter == std::numeric_limits<std::int16_t>::max()) {
        throw RunTimeError(ErrorNumber::overflow);
    }
    ++counter;
}
