// The one place where numbers are read from text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The number at the beginning of the text: blanks, tabs and line ends, a sign, digits, a decimal
/// point (always "."), an exponent. Reading stops at the first character that cannot continue it:
/// "250ms" is 250, "abc" and "" are 0. Never "inf" or "nan" by name; a number too large for a
/// double is infinite.
double leadingNumber(std::string_view text);

/// True when the whole text is a number of that form, with nothing but blanks, tabs and line ends
/// around it.
bool isNumber(std::string_view text);

/// The number in plain decimal: "11", "-3", "2.5".
std::string plainDecimal(double number);

/// The number with a comma before each three digits: "1,204".
std::string grouped(std::size_t number);

/// The leading number rounded to an integer, halves to even (2.5 is 2, 3.5 is 4).
/// Raises ErrorNumber::overflow when it does not fit the type.
std::int16_t readInt16(std::string_view text);
std::int32_t readInt32(std::string_view text);

/// The number rounded as above. Raises ErrorNumber::overflow.
std::int32_t roundToInt32(double number);

/// Adds 1. Raises ErrorNumber::overflow past 32767; then nothing has changed.
void countUp(std::int16_t& counter);
