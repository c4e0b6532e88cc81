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
                 {name, "_a-b.c\u00B7z09"},
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
                 {name, ".a", "'.' at the start of a branch name" + unreadable},
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

TEST(FileFitness, KnowsANameByWhereItStands) {
    ConfigTree tree;
    tree.AddNode("", "config", "/a&b.xml", NodeKind::config);  // the path is not in the file
    tree.AddNode("config", "New Device 0", "New Device 0", NodeKind::plc);
    tree.AddNode("config", "P", "P", NodeKind::plc);
    const auto add = [&](const char* parent, const std::string& text, NodeKind kind) {
        return &tree.AddNode(parent, parent + ("." + text), text, kind);
    };
    const Node* dropped = add("P", "New Device 0", NodeKind::plc);
    const Node* light = add("P", "Light", NodeKind::branch);
    add("P", "1.OG & 2.OG", NodeKind::item);
    const auto signs = [&] {
        std::string all;
        for (TreeWalk walk(*tree.root()); const Node* node = walk.next();)
            if (const auto fault = spoilsFile(*node, tree); !fault.empty()) all += fault + "\n";
        return all;
    };
    EXPECT_EQ(signs(), "'&'" + unreadable + "\n") << "no empty node is saved";
    EXPECT_FALSE(isSaved(*dropped));

    tree.removeAll({tree.FindNode("P.1.OG & 2.OG")});
    add("P.New Device 0", "Lamp", NodeKind::item);
    add("P", "LIGHT", NodeKind::item);
    add("P", "light", NodeKind::plc);
    add("P.light", "Lamp", NodeKind::item);
    add("config", "Lamp", NodeKind::item);
    const std::string twice =
        "Read back in capitals, it has the name of \"LIGHT\" beside it: the "
        "configuration cannot be saved\n";
    EXPECT_EQ(signs(), "' ' in a branch name" + unreadable + "\n" + twice + twice +
                           "Below no device: the configuration cannot be saved\n");
    EXPECT_TRUE(isSaved(*light));
}

}  // namespace
