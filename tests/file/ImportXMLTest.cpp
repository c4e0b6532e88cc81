#include "file/ImportXML.h"

#include <gtest/gtest.h>

#include <string>

#include "support/EditorWorld.h"

namespace {

/// What comes of reading it: messages, and the outline of what was read.
std::string outcome(const std::string& text) {
    EditorWorld world;
    world.open("/house.xml", text);
    expectTreeAndRegistriesAgree(world.document);
    return world.told() + outline(world.document);
}

std::string nested(int levels, const std::string& name, const std::string& contents) {
    std::string begins, ends;
    for (int i = 0; i < levels; ++i) {
        begins += "<" + name + ">";
        ends += "</" + name + ">";
    }
    return configuration(plc("A") + plc("B", begins + contents + ends));
}

TEST(ImportXML, TellsOfTheFirstFaultsAndCountsTheOthers) {
    std::string items, told;
    for (int i = 0; i < 1209; ++i)
        items += "<tag/>";
    for (int i = 0; i < 5; ++i)
        told += " Error n. 94  Invalid use of Null in BrowseBranch\n";
    EXPECT_EQ(outcome(configuration(plc("A", items + tag("x")))), told + "… and 1,204 more\nA[x]");
}

TEST(ImportXML, RefusesWhatLiesTooDeepBeforeAnythingIsMadeOfIt) {
    const std::string deep =
        " Error n. 321  Branches lie within one another more than 1,000 deep in ImportXML\n";
    const std::string lengthy =
        " Error n. 321  The path to a branch or an item is longer than 64 KB in ImportXML\n";
    EXPECT_EQ(outcome(nested(1001, "F", "")), deep);
    EXPECT_EQ(outcome(nested(60000, "F", tag("x"))), deep);
    EXPECT_EQ(outcome(nested(200, std::string(600, 'n'), "")), lengthy);
    EXPECT_EQ(outcome(nested(1, "F", tag(std::string(65533, 'n')))), lengthy);
    const std::string longest(65532, 'n');
    EXPECT_EQ(outcome(nested(1, "F", tag(longest))), "A[] B[F[" + longest + "]]");
}

}  // namespace
