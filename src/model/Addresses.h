// Group addresses: main, middle and sub group.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Returns the index of a group address, main x 2048 + middle x 256 + sub, in hexadecimal, upper
/// case, padded on the left with "0" to `width` digits: "0A03" for "1/2/3". A missing part counts
/// as 0. Raises ErrorNumber::overflow for an index that does not fit 32 bits.
std::string AddressToHex(std::string_view address, std::size_t width);

/// The largest group address of a bus.
inline constexpr std::string_view lastBusAddress = "31/7/255";

/// Returns the index of a group address as a number. A valid address is three numbers without signs
/// and blanks, up to 31/7/255; returns std::nullopt for any other text.
std::optional<std::uint16_t> busAddress(std::string_view address);
