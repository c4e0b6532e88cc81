// Reads numbers from text. All other code reads them with these functions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Returns the number at the beginning of the text: blanks, tabs and line ends, a sign, digits, a
/// decimal point (always "."), an exponent. Reading stops at the first character that cannot
/// continue the number: "250ms" is 250, "abc" and "" are 0. The words "inf" and "nan" are not
/// numbers; a number too large for a double is infinite.
double leadingNumber(std::string_view text);

/// True when the whole text is a number of that form, with only blanks, tabs and line ends around
/// it.
bool isNumber(std::string_view text);

/// The number in decimal without an exponent: "11", "-3", "2.5".
std::string plainDecimal(double number);

/// The number with commas as thousands separators: "1,204".
std::string withThousandsSeparators(std::size_t number);

/// Returns leadingNumber() rounded to an integer, halves to even (2.5 is 2, 3.5 is 4).
/// Raises ErrorNumber::overflow when it does not fit the type.
std::int16_t readInt16(std::string_view text);
std::int32_t readInt32(std::string_view text);

/// Rounds in the same way. Raises ErrorNumber::overflow when the result does not fit.
std::int32_t roundToInt32(double number);

/// Adds 1. At 32767, raises ErrorNumber::overflow and leaves the counter unchanged.
void countUp(std::int16_t& counter);
