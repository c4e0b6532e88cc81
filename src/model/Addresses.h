// Group addresses: main, middle and sub group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The hexadecimal index of a group address: main x 2048 + middle x 256 + sub, upper case,
/// padded on the left with "0" to `width`. "1/2/3" gives "0A03". A part that is missing counts
/// as 0. Raises ErrorNumber::overflow for an index that does not fit 32 bits.
std::string AddressToHex(std::string_view address, std::size_t width);

/// Where the addresses of a bus end.
inline constexpr std::string_view lastBusAddress = "31/7/255";

/// The index of a group address, as a number; nothing for a text that is none which a bus can have:
/// three numbers without signs and blanks, up to 31/7/255.
std::optional<std::uint16_t> busAddress(std::string_view address);
