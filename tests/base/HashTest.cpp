// The hash by which keys are found.
#include <gtest/gtest.h>

#include <set>

#include "base/Text.h"

namespace {

TEST(Hashes, SpreadKeysOverATableWhereverTheirNumbersStand) {
    for (std::string name; name.size() < 24; name += 'n') {
        std::set<std::uint32_t> places;
        for (int number = 1000; number < 2000; ++number)
            places.insert(hashIgnoringCase(name + std::to_string(number)) % 65536);
        EXPECT_GT(places.size(), 950) << name;
    }
    // Made to collide where a hash only multiplies and shifts, whatever it begins with.
    std::set<std::uint32_t> hashes;
    for (unsigned number = 0; number < 4096; ++number) {
        std::string name;
        for (unsigned part = 0; part < 12; ++part)
            name += (number >> part & 1U) != 0 ? "xxxxxxx{0000200{" : "xxxxxxx;0000000;";
        hashes.insert(hashIgnoringCase(name));
    }
    EXPECT_GT(hashes.size(), 4090);
}

}  // namespace
