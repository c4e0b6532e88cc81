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
        const bool mayBecome = isThere && !newKey.empty() && (isFree || holder == place);
        ASSERT_EQ(registry.find(key) != nullptr, isThere) << i;
        expectThat(isThere, [&] { registry.at(key); });
        const auto deed = random() % 3;
        if (deed == 0) expectThat(isThere, [&] { registry.remove(key); });
        if (deed == 1)
            expectThat(isFree,
                       [&] { registry.add(std::make_shared<std::string>(newKey), newKey); });
        if (deed == 2)
            expectThat(mayBecome, [&] {
                registry.rekey(key, newKey, [&](std::string& record) { record = newKey; });
            });
        if ((deed == 0 && isThere) || (deed == 2 && mayBecome)) expected.erase(place);
        if ((deed == 1 && isFree) || (deed == 2 && mayBecome))
            expected.push_back(upperCase(newKey));
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
        expectThat(!keys.empty(), [&] { keys.push_back(upperCase(*registry.last())); });
        ASSERT_TRUE(keys.empty() || keys.back() == expected.back());
    }
}

TEST(Registry, HasItsKeysSpreadOverItsTableWhereverTheirNumbersStand) {
    for (std::string name; name.size() < 24; name += 'n') {
        std::set<std::uint32_t> places;
        for (int number = 1000; number < 2000; ++number)
            places.insert(hashIgnoringCase(name + std::to_string(number)) % 65536);
        EXPECT_GT(places.size(), 950) << name;
    }
}

}  // namespace
