#include "file/FileRules.h"

#include "support/RandomDocuments.h"

namespace {

/// Saves random configurations and reads them back.
TEST(FileRules, ReportExactlyWhatCannotBeReadBack) {
    RandomDocuments world;
    readBack::Check check;
    const unsigned documents = walkSetting("RULES_DOCUMENTS", 10'000);
    for (unsigned i = 0; i < documents && !::testing::Test::HasFailure(); ++i) {
        i == 0 || world.below(2) == 0 ? world.make() : world.change();
        check(world);
        EXPECT_FALSE(::testing::Test::HasFailure())
            << "document " << i << ": " << outline(world.document);
    }
    EXPECT_GT(std::min({check.readBack, check.changed, check.asked, check.refused}),
              static_cast<int>(documents / 100));
}

/// What surrounds a character, and how much, changes neither its fault nor how it is read.
TEST(FileRules, FindACharacterAnywhereInAText) {
    const auto kindOf = [](const std::string& text, FilePlace place) {
        const FaultKind kind = faultOf(text, place).kind;
        EXPECT_EQ(isUnreadable(text, place), kind == FaultKind::unreadable) << text;
        return kind;
    };
    std::vector<std::string> characters{"\xC3",       "\x80", "\u0100", "\u20AC",
                                        "\U0001F600", "]]>",  "\r\n"};
    for (int code = 0; code < 0x100; ++code)
        characters.push_back(readBack::utf8(std::string(1, static_cast<char>(code))));
    for (const FilePlace place : {FilePlace::attribute, FilePlace::content})
        for (const std::string& character : characters)
            for (const std::string letter : {"a", "\u00E9"})
                for (std::string start; start.size() < 12; start += letter)
                    for (std::string end; end.size() < 12; end += letter) {
                        const std::string text = start + character + end;
                        ASSERT_EQ(kindOf(text, place), kindOf(character, place)) << text;
                        ASSERT_EQ(asRead(text, place), start + asRead(character, place) + end);
                        ASSERT_EQ(traitsOf(text).hasPoint, character == ".") << text;
                    }
    EXPECT_EQ(asRead("\r\n\r\t\n\u20AC", FilePlace::content), "\n\n\t\n?");
    EXPECT_EQ(asRead("\r\n\r\t\n\u20AC", FilePlace::attribute), "    ?");
}

TEST(FileRules, LimitTheLengthOfAllKeysTogether) {
    const std::string name(64, 'N');
    std::string start, end;
    std::size_t path = 1;  // the length of the key "P"
    std::size_t rest = maxBytesOfAllKeys;
    for (int level = 0; level < 999; ++level) {
        start += "<" + name + ">";
        end += "</" + name + ">";
        rest -= path += 1 + name.size();
    }
    int number = 1000;
    for (; rest > path + 5; ++number) {
        start += tag(std::to_string(number));
        rest -= path + 5;
    }
    const std::string last(rest - 2, 'x');
    EditorWorld world;
    std::string text = configuration(plc("P", start + end + tag(last)));
    world.open("/house.xml", text);
    EXPECT_EQ(world.takeMessages(), "");
    const FileRules& rules = world.editor.fileRules();
    EXPECT_FALSE(rules.refusal());
    world.document.renameItem(world.document.tree().nodeAt("P." + last), last + "x");
    const auto refusal = rules.refusal();
    EXPECT_TRUE(refusal && std::string(refusal->error.description())
                               .ends_with("N." + std::to_string(number - 1) +
                                          "\" and all before it have paths longer "
                                          "than 128 MB together and cannot be saved"));

    // Keys count before they are made, so those in a device that cannot be read count, too.
    text.replace(text.find(" port="), 6, " p=").insert(text.find("xxx"), "x");
    world.document.saved = true;
    world.open("/house.xml", text);
    EXPECT_EQ(world.takeMessages(),
              " Error n. 321  The paths to all branches and items are longer than 128 MB together "
              "in ImportXML\n");
}

/// A fault in the program: without the refusal, the record would be lost.
TEST(FileRules, RefuseToSaveARecordWithoutANode) {
    for (const std::string key : {"lost", "P.F.x"}) {
        EditorWorld world;
        world.open("/house.xml", configuration(plc("P", branch("F", tag("x")))));
        const_cast<Registry<clsBranch>&>(world.document.branches())
            .add(std::make_shared<clsBranch>(), key);
        EXPECT_EQ(std::string(world.editor.fileRules().refusal().value().error.description()),
                  (key == "lost" ? "\"lost\"" : "\"A record\"") +
                      std::string(" would be left out of the file"));
    }
}

}  // namespace
