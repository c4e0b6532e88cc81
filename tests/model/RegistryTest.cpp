#include "model/Registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

/// What an action raises; nothing when it raises nothing.
template <typename Action>
std::optional<ErrorNumber> raised(Action action) {
    try {
        action();
        return std::nullopt;
    } catch (const RunTimeError& error) {
        return error.number();
    }
}

TEST(Registry, IsAListInOrderOfAddingWhoseKeysDifferInMoreThanLetterCase) {
    Registry<std::string> registry;
    std::vector<std::string> expected;  // the keys in capitals
    std::mt19937 random(1);             // NOLINT(cert-msc51-cpp)
    const auto anyKey = [&] {
        const std::string key = (random() % 2 == 0 ? "\u00C4tna_" : "\u00E4TNA_");
        return key + std::to_string(random() % 300);
    };
    const auto placeOf = [&](const std::string& key) {
        return std::ranges::find(expected, upperCase(key));
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string key = i % 1000 == 0 ? "" : anyKey();
        const auto place = placeOf(key);
        const bool isThere = place != expected.end();
        ASSERT_EQ(registry.find(key) != nullptr, isThere) << i;
        std::optional<ErrorNumber> error;
        if (random() % 3 == 0) {
            if (key.empty()) error = ErrorNumber::invalidCall;
            if (isThere) error = ErrorNumber::keyTaken;
            ASSERT_EQ(raised([&] { registry.add(std::make_shared<std::string>(key), key); }),
                      error);
            if (!error) expected.push_back(upperCase(key));
        } else if (random() % 2 == 0) {
            if (!isThere) error = ErrorNumber::invalidCall;
            ASSERT_EQ(raised([&] { registry.at(key); }), error);
            ASSERT_EQ(raised([&] { registry.remove(key); }), error);
            if (!error) expected.erase(place);
        } else {
            const std::string newKey = i % 1001 == 0 ? "" : anyKey();
            const auto holder = placeOf(newKey);
            if (holder != expected.end() && holder != place) error = ErrorNumber::keyTaken;
            if (!isThere || newKey.empty()) error = ErrorNumber::invalidCall;
            const auto change = [&](std::string& record) { record = newKey; };
            ASSERT_EQ(raised([&] { registry.rekey(key, newKey, change); }), error);
            if (!error) {
                expected.erase(place);
                expected.push_back(upperCase(newKey));
            }
        }
        if (i == 15000) {
            registry.clear();
            expected.clear();
            EXPECT_EQ(raised([&] { registry.last(); }), ErrorNumber::invalidCall);
        }
        if (i % 50 != 0) continue;
        std::vector<std::string> keys;
        for (const auto& [entry, record] : registry) {
            EXPECT_EQ(entry, *record);
            keys.push_back(upperCase(entry));
        }
        ASSERT_EQ(keys, expected);
        ASSERT_EQ(registry.count(), expected.size());
        ASSERT_TRUE(keys.empty() || upperCase(*registry.last()) == keys.back());
    }
}

}  // namespace
