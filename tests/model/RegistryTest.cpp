#include "model/Registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

namespace {

TEST(Registry, IsAListInOrderOfAddingWhoseKeysDifferInMoreThanLetterCase) {
    Registry<std::string> registry;
    std::vector<std::string> expected;  // the keys in capitals
    std::mt19937 random(1);             // NOLINT(cert-msc51-cpp)
    const auto anyKey = [&] {
        const std::string key = (random() % 2 == 0 ? "\u00C4tna_" : "\u00E4TNA_");
        return random() % 1000 == 0 ? "" : key + std::to_string(random() % 300);
    };
    const auto expectThat = [](bool works, const auto& action) {
        if (!works) {
            EXPECT_THROW(action(), RunTimeError);
            return;
        }
        action();
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string key = anyKey();
        const std::string newKey = anyKey();
        const auto place = std::ranges::find(expected, upperCase(key));
        const auto holder = std::ranges::find(expected, upperCase(newKey));
        const bool isThere = place != expected.end();
        const bool isFree = !newKey.empty() && holder == expected.end();
        ASSERT_EQ(registry.find(key) != nullptr, isThere) << i;
        expectThat(isThere, [&] { registry.at(key); });
        const auto deed = random() % 3;
        if (deed == 0) expectThat(isThere, [&] { registry.take(key); });
        if (deed == 1)
            expectThat(isFree,
                       [&] { registry.add(std::make_shared<std::string>(newKey), newKey); });
        if (deed == 2 && isThere) {  // taken out and put back, whatever came and went meanwhile
            auto taken = registry.take(key);
            if (isFree) {
                registry.add(std::make_shared<std::string>(newKey), newKey);
                if (i % 7 == 0) registry.compact({&taken.place});
                registry.take(newKey);
            }
            registry.putBack(std::move(taken));
        }
        if (deed == 0 && isThere) expected.erase(place);
        if (deed == 1 && isFree) expected.push_back(upperCase(newKey));
        if (i % 1000 == 0) registry.compact({});
        if (i == 15000) {
            registry.clear();
            expected.clear();
        }
        if (i % 50 != 0) continue;
        std::vector<std::string> keys;
        for (const auto& [entry, record] : registry)
            keys.push_back(upperCase(*record));
        ASSERT_EQ(keys, expected);
        ASSERT_EQ(registry.count(), expected.size());
    }
}

TEST(Registry, HasItsKeysSpreadOverItsTableWhereverTheirNumbersStand) {
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
