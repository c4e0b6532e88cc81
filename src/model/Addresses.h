// Group addresses: main, middle and sub group.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The hexadecimal index of a group address: main x 2048 + middle x 256 + sub, upper case,
/// padded on the left with "0" to `width`. "1/2/3" gives "0A03". A part that is missing counts
/// as 0. Raises ErrorNumber::overflow for an index that does not fit 32 bits.
std::string AddressToHex(std::string_view address, std::size_t width);
