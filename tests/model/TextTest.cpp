#include "model/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

std::string latin1(std::string_view text) {
    std::string out = "<";
    appendLatin1(out, text);
    return out;
}

TEST(Text, IsWrittenOneByteACharacterWithAQuestionMarkForWhatDoesNotFit) {
    EXPECT_EQ(latin1("K\u00FCche \u00FF"), "<K\xFC\x63he \xFF");
    EXPECT_EQ(latin1("5 \u20AC, \u0100, \U0001F4A1."), "<5 ?, ?, ?.");
}

TEST(Text, CountsABrokenByteAsOneCharacter) {
    // A continuation of nothing; a character cut off; "<" in two, three and four bytes; half of
    // a surrogate pair; a character beyond the last.
    for (const std::string bytes : {"\x80", "\xE2\x82", "\xC0\xBC", "\xE0\x80\xBC",
                                    "\xF0\x80\x80\xBC", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        const std::string marks(bytes.size(), '?');
        EXPECT_EQ(latin1("a" + bytes + "b"), "<a" + marks + "b");
        EXPECT_EQ(upperCase("a" + bytes + "b"), "A" + bytes + "B");
    }
}

TEST(Text, IsEqualIgnoringCaseOnlyWhenNothingElseDiffers) {
    EXPECT_EQ(upperCase("\u00E0\u00FE\u0153\u0161\u017E\u00DF\u00F7\u00FF\u00B5"),
              "\u00C0\u00DE\u0152\u0160\u017D\u00DF\u00F7\u00FF\u00B5");
    const struct {
        const char *a, *b;
        bool equal;
    } cases[] = {{"Plant.Floor1", "pLANT.fLOOR1", true},
                 {"Plant", "Plan", false},
                 {"azAZ.12@[`{z\u00C4", "AZaz.12@[`{Z\u00E4", true},
                 {"@[", "`{", false},
                 {"house@12", "house`12", false},
                 {"house[12", "house{12", false},
                 {"\u00D7", "\u00F7", false},
                 {"\u00C4", "ae", false}};  // as many bytes
    for (const auto& [a, b, equal] : cases) {
        EXPECT_EQ(equalIgnoringCase(a, b), equal) << a << " " << b;
        EXPECT_EQ(hashIgnoringCase(a) == hashIgnoringCase(b), equal) << a << " " << b;
    }
}

TEST(Text, StandsInAlphabeticalOrderWithCaseAndAccentsTogether) {
    const std::vector<std::string> ordered = {"",          "1",         "10",         "2",
                                              "Apfel",     "apfel",     "\u00C4pfel", "\u00E4pfel",
                                              "Apfelbaum", "Birne",     "\u00E9tage", "Etui",
                                              "Z",         "\u017Eena", "zz"};
    std::vector<std::string> sorted(ordered.rbegin(), ordered.rend());
    std::ranges::sort(sorted, alphabeticallyBefore);
    EXPECT_EQ(sorted, ordered);
}

}  // namespace
