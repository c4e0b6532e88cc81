#include "model/FileFitness.h"

#include <gtest/gtest.h>

namespace {

constexpr auto name = FilePlace::elementName;
constexpr auto content = FilePlace::content;
constexpr auto attribute = FilePlace::attribute;

const std::string unreadable = ": the OPC server cannot read a file that holds this";

TEST(FileFitness, SaysWhatInATextIsWrongAndWhatComesOfIt) {
    const struct {
        FilePlace place;
        std::string fault;
        std::vector<std::string> texts;
    } cases[] = {
        {name, "", {"FLOOR1", "_a-b.c\u00B7z09", "\u00C0\u00D6\u00D8\u00F6\u00F8\u00FF", "tag1"}},
        {content, "", {"1.5", "2\u00B0 \"hall\" > 'x' ]] >\t\n\u0080\u00FF"}},
        {attribute, "", {"", "COM1 > 'x' ]]> \u00FF"}},
        {name, "A branch without a name" + unreadable, {""}},
        {name, "'1' at the start of a branch name" + unreadable, {"1st"}},
        {name, "'.' at the start of a branch name" + unreadable, {".a"}},
        {name, "' ' in a branch name" + unreadable, {" a", "a b"}},
        {name, "':' in a branch name" + unreadable, {"a:b"}},
        {name, "'\u00D7' in a branch name" + unreadable, {"a\u00D7"}},
        {name, "'\u00F7' in a branch name" + unreadable, {"\u00F7"}},
        {name, "'\u0416' in a branch name" + unreadable, {"a\u0416"}},  // XML would take it
        {name, "U+00A0 in a branch name" + unreadable, {"a\u00A0"}},
        {name, "'Tag' as a branch name: read back as something else", {"Tag"}},
        {name, "'TAGS' as a branch name: read back as something else", {"TAGS"}},
        {content, "'<'" + unreadable, {"a<b&c"}},
        {content, "']]>'" + unreadable, {"a]]]>b"}},
        {content, "U+0000" + unreadable, {std::string(1, '\0')}},
        {content, "U+001F" + unreadable, {"\x1F"}},
        {content, "'\u20AC': saved as \"?\"", {"5 \u20AC \u0100"}},
        {content, "'\uFFFD': saved as \"?\"", {"\x80"}},
        {content, "U+000D: read back as a line feed", {"a\r\nb"}},
        {attribute, "'\"'" + unreadable, {"a\"b"}},
        {attribute, "'&'" + unreadable, {"\u20AC & \""}},  // the graver one
        {attribute, "U+0009: read back as a blank", {"a\tb"}}};
    for (const auto& [place, fault, texts] : cases)
        for (const std::string& text : texts)
            EXPECT_EQ(spoilsFile(text, place), fault) << text;
}

TEST(FileFitness, KnowsANameByWhereItStands) {
    ConfigTree tree;
    tree.AddNode("", "config", "/a&b.xml", NodeKind::config);  // the path is not in the file
    tree.AddNode("config", "New Device 0", "New Device 0", NodeKind::plc);
    tree.AddNode("config", "P", "P", NodeKind::plc);
    const auto add = [&](const char* parent, const std::string& text, NodeKind kind) {
        tree.AddNode(parent, parent + ("." + text), text, kind);
    };
    add("P", "New Device 0", NodeKind::plc);  // was dropped there
    add("P", "Light", NodeKind::branch);
    add("P", "1.OG & 2.OG", NodeKind::item);
    const auto signs = [&] {
        std::string all;
        for (TreeWalk walk(*tree.root()); const Node* node = walk.next();)
            if (const auto fault = spoilsFile(*node, tree); !fault.empty()) all += fault + "\n";
        return all;
    };
    EXPECT_EQ(signs(), "'&'" + unreadable + "\n") << "no empty node is saved";

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
}

}  // namespace
