#include "model/Registry.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "model/RunTimeError.h"

namespace {

auto raises(ErrorNumber number) {
    return testing::Throws<RunTimeError>(testing::Property(&RunTimeError::number, number));
}

/// A registry of texts, each of which begins as the key under which it was added.
class TextRegistry : public testing::Test {
 protected:
    TextRegistry() {
        for (const char* key : {"Plant", "\u00C4tna", "Pump", "Roof"})
            add(key);
    }
    void add(const char* key) { registry.add(std::make_shared<std::string>(key), key); }
    void rekey(const char* oldKey, const char* newKey) {
        registry.rekey(oldKey, newKey, [&](std::string& record) { record = newKey; });
    }
    std::string entries() const {
        std::string result;
        for (const auto& [key, record] : registry)
            result += key + (key == *record ? " " : "=" + *record + " ");
        return result;
    }

    const std::string asAdded = "Plant \u00C4tna Pump Roof ";
    Registry<std::string> registry;
};

TEST_F(TextRegistry, MatchesKeysWithoutRegardToLetterCase) {
    EXPECT_EQ(*registry.at("pLANT"), "Plant");
    EXPECT_EQ(*registry.find("\u00E4TNA"), "\u00C4tna");
    EXPECT_EQ(registry.find("Atna"), nullptr);
    for (const char* taken : {"Plant", "PLANT", "\u00E4tna"})
        EXPECT_THAT([&] { add(taken); }, raises(ErrorNumber::keyTaken)) << taken;
    EXPECT_THAT([&] { add(""); }, raises(ErrorNumber::invalidCall));
    EXPECT_EQ(entries(), asAdded);
}

TEST_F(TextRegistry, KeepsInsertionOrderAcrossRemovals) {
    registry.remove("PUMP");
    add("Pump");
    EXPECT_EQ(entries(), "Plant \u00C4tna Roof Pump ");
    registry.remove("Plant");
    registry.remove("Pump");
    EXPECT_EQ(entries(), "\u00C4tna Roof ");
    EXPECT_EQ(*registry.last(), "Roof");
    EXPECT_THAT([&] { registry.remove("Pump"); }, raises(ErrorNumber::invalidCall));
    EXPECT_THAT([&] { registry.at("Pump"); }, raises(ErrorNumber::invalidCall));

    registry.clear();
    EXPECT_THAT([&] { registry.last(); }, raises(ErrorNumber::invalidCall));
    add("Plant");
    EXPECT_EQ(entries(), "Plant ");
}

TEST_F(TextRegistry, MovesARekeyedEntryToTheEnd) {
    rekey("plant", "Tower");
    rekey("Pump", "PUMP");  // its own key in another case is not taken
    EXPECT_EQ(entries(), "\u00C4tna Roof Tower PUMP ");
    EXPECT_EQ(registry.find("Plant"), nullptr);
    EXPECT_EQ(*registry.at("tower"), "Tower");
}

TEST_F(TextRegistry, ChangesNothingWhenARekeyIsRefused) {
    EXPECT_THAT([&] { rekey("Plant", "\u00E4TNA"); }, raises(ErrorNumber::keyTaken));
    EXPECT_THAT([&] { rekey("Nobody", "Tower"); }, raises(ErrorNumber::invalidCall));
    EXPECT_EQ(entries(), asAdded);
    EXPECT_THAT([&] { rekey("Plant", ""); }, raises(ErrorNumber::invalidCall));
    EXPECT_EQ(entries(), asAdded);
}

TEST_F(TextRegistry, LosesAndMixesUpNothingInALongLife) {
    registry.clear();
    std::vector<std::string> expected;
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
        const std::string key = "Plant.Item_" + std::to_string(random() % 500);
        const auto place = std::ranges::find(expected, key);
        ASSERT_EQ(registry.find(upperCase(key)) != nullptr, place != expected.end()) << i;
        if (place == expected.end()) {
            add(key.c_str());
            expected.push_back(key);
        } else {
            registry.remove(key);
            expected.erase(place);
        }
    }
    std::string inOrder;
    for (const std::string& key : expected)
        inOrder += key + " ";
    EXPECT_EQ(entries(), inOrder);
}

}  // namespace
