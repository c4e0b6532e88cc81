#include "model/FileFitness.h"

#include <gtest/gtest.h>

namespace {

constexpr auto name = FilePlace::elementName;
constexpr auto content = FilePlace::content;
constexpr auto attribute = FilePlace::attribute;

const std::string unreadable = ": the OPC server cannot read a file that holds this";

TEST(FileFitness, LetsPassWhatTheFileCarries) {
    const struct {
        FilePlace place;
        const char* text;
    } cases[] = {{name, "FLOOR1"},
                 {name, "_a-b_c\u00B7z09"},
                 {name, "\u00C0\u00D6\u00D8\u00F6\u00F8\u00FF"},
                 {name, "tag1"},
                 {content, "1.5"},
                 {content, "2\u00B0 \"hall\" > 'x' ]] >\t\n\u0080\u00FF"},
                 {attribute, ""},
                 {attribute, "COM1 > 'x' ]]> \u00FF"}};
    for (const auto& [place, text] : cases)
        EXPECT_EQ(spoilsFile(text, place), "") << text;
}

TEST(FileFitness, SaysWhatInATextIsWrongAndWhatComesOfIt) {
    const struct {
        FilePlace place;
        std::string text, fault;
    } cases[] = {{name, "", "A branch without a name" + unreadable},
                 {name, "1st", "'1' at the start of a branch name" + unreadable},
                 {name, "-a", "'-' at the start of a branch name" + unreadable},
                 {name, " a", "' ' in a branch name" + unreadable},
                 {name, "a b", "' ' in a branch name" + unreadable},
                 {name, "a:b", "':' in a branch name" + unreadable},
                 {name, "a\u00D7", "'\u00D7' in a branch name" + unreadable},
                 {name, "\u00F7", "'\u00F7' in a branch name" + unreadable},
                 {name, "a\u0416", "'\u0416' in a branch name" + unreadable},  // XML would take it
                 {name, "a\u00A0", "U+00A0 in a branch name" + unreadable},
                 {name, "a.b", "'.' in a branch name: left out when the file is read"},
                 {FilePlace::itemName, "a.b", "'.': left out when the file is read"},
                 {name, "Tag", "'Tag' as a branch name: read back as something else"},
                 {name, "TAGS", "'TAGS' as a branch name: read back as something else"},
                 {content, "a<b&c", "'<'" + unreadable},
                 {content, "a]]]>b", "']]>'" + unreadable},
                 {content, std::string(1, '\0'), "U+0000" + unreadable},
                 {content, "\x1F", "U+001F" + unreadable},
                 {content, "5 \u20AC \u0100", "'\u20AC': saved as \"?\""},
                 {content, "\x80", "'\uFFFD': saved as \"?\""},
                 {content, "a\r\nb", "U+000D: read back as a line feed"},
                 {attribute, "a\"b", "'\"'" + unreadable},
                 {attribute, "\u20AC & \"", "'&'" + unreadable},  // the graver one
                 {attribute, "a\tb", "U+0009: read back as a blank"}};
    for (const auto& [place, text, fault] : cases)
        EXPECT_EQ(spoilsFile(text, place), fault) << text;
}

TEST(FileFitness, KnowsWhereTheFileHoldsATextOfTreeOrList) {
    EXPECT_EQ(spoilsFile("/a&b.xml", filePlaceOf("config")), "");  // the path is not in the file
    EXPECT_NE(spoilsFile("1.5", filePlaceOf("item")), "");
    EXPECT_EQ(spoilsFile("1.5", filePlaceOf("item", 1)), "");
    EXPECT_EQ(filePlaceOf("plc", 1), attribute);
    EXPECT_EQ(filePlaceOf("branch"), name);
}

}  // namespace
