#include "model/Registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

/// What an action raises; 0 when it raises nothing.
template <typename Action>
ErrorNumber raised(Action action) {
    try {
        action();
        return {};
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
        return random() % 1000 == 0 ? "" : key + std::to_string(random() % 300);
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string key = anyKey();
        const std::string newKey = anyKey();
        const auto place = std::ranges::find(expected, upperCase(key));
        const auto holder = std::ranges::find(expected, upperCase(newKey));
        const bool isThere = place != expected.end();
        ASSERT_EQ(registry.find(key) != nullptr, isThere) << i;
        ErrorNumber error = isThere ? ErrorNumber{} : ErrorNumber::invalidCall;
        switch (random() % 4) {
            case 0: ASSERT_EQ(raised([&] { registry.at(key); }), error); break;
            case 1:
                ASSERT_EQ(raised([&] { registry.remove(key); }), error);
                if (isThere) expected.erase(place);
                break;
            case 2:
                if (holder != expected.end())
                    error = ErrorNumber::keyTaken;
                else
                    error = newKey.empty() ? ErrorNumber::invalidCall : ErrorNumber{};
                ASSERT_EQ(
                    raised([&] { registry.add(std::make_shared<std::string>(newKey), newKey); }),
                    error);
                if (error == ErrorNumber{}) expected.push_back(upperCase(newKey));
                break;
            default:
                if (newKey.empty())
                    error = ErrorNumber::invalidCall;
                else if (isThere && holder != expected.end() && holder != place)
                    error = ErrorNumber::keyTaken;
                ASSERT_EQ(raised([&] {
                              registry.rekey(key, newKey,
                                             [&](std::string& record) { record = newKey; });
                          }),
                          error);
                if (error != ErrorNumber{}) break;
                expected.erase(place);
                expected.push_back(upperCase(newKey));
        }
        if (i == 15000) {
            registry.clear();
            expected.clear();
        }
        std::vector<std::string> keys;
        for (const auto& [entry, record] : registry)
            keys.push_back(upperCase(*record));
        ASSERT_EQ(keys, expected);
        ASSERT_EQ(registry.count(), expected.size());
        ASSERT_EQ(raised([&] { EXPECT_EQ(upperCase(*registry.last()), keys.back()); }),
                  keys.empty() ? ErrorNumber::invalidCall : ErrorNumber{});
    }
}

}  // namespace
