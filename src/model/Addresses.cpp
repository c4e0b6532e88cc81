#include "model/Addresses.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "base/Numbers.h"

std::string AddressToHex(std::string_view address, std::size_t width) {
    double index = 0;
    for (const double weight : {2048.0, 256.0, 1.0}) {
        const auto slash = std::min(address.find('/'), address.size());
        index += leadingNumber(address.substr(0, slash)) * weight;
        address.remove_prefix(std::min(slash + 1, address.size()));
    }
    std::array<char, 8> digits{};
    const auto value = static_cast<std::uint32_t>(roundToInt32(index));
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    std::string hex(digits.data(), end);
    std::ranges::transform(hex, hex.begin(),
                           [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    if (hex.size() < width) hex.insert(0, width - hex.size(), '0');
    return hex;
}

std::optional<std::uint16_t> busAddress(std::string_view address) {
    std::uint32_t index = 0;
    const char* next = address.data();
    const char* const end = next + address.size();
    for (const std::uint32_t last : {31U, 7U, 255U}) {
        if (next != address.data() && (next == end || *next++ != '/')) return std::nullopt;
        std::uint32_t part = 0;
        const auto [stop, error] = std::from_chars(next, end, part);
        if (error != std::errc() || part > last) return std::nullopt;
        index = index * (last + 1) + part;
        next = stop;
    }
    if (next != end) return std::nullopt;
    return static_cast<std::uint16_t>(index);
}
