// The memory that undo steps are said to take.
#include "support/EditorWorld.h"

namespace {

constexpr std::size_t items = 10;
constexpr std::size_t length = 10'000;

Node& itemOf(Document& document, std::size_t number) {
    return *document.tree().nodeAt("P.F").GetChildren().at(number);
}

TEST(History, CountsTheTextsThatAStepKeeps) {
    const struct {
        const char* name;
        std::size_t texts;  ///< long texts that are kept for each item
        void (*act)(Document& document);
    } steps[] = {
        {"comments", 1,
         [](Document& document) {
             for (std::size_t i = 0; i < items; ++i)
                 document.setComment(itemOf(document, i), "");
         }},
        {"names", 1,
         [](Document& document) {
             for (std::size_t i = 0; i < items; ++i)
                 document.renameItem(itemOf(document, i), std::to_string(i));
         }},
        {"a branch above", 1,
         [](Document& document) { document.renameBranch(document.tree().nodeAt("P.F"), "G"); }},
        {"a deletion", 2,
         [](Document& document) { document.RemoveSubtree(document.tree().nodeAt("P.F")); }},
        {"a detached device", 0,
         [](Document& document) {
             document.move(
                 document.placementOf(document.tree().nodeAt("P"), document.tree().nodeAt("Q")));
         }},
    };
    for (const auto& [name, texts, act] : steps) {
        std::string contents;
        for (std::size_t i = 0; i < items; ++i)
            contents += tag(std::to_string(i) + std::string(length, 'x'));
        EditorWorld world;
        world.open("/house.xml", configuration(plc("P", branch("F", contents)) + plc("Q")));
        for (std::size_t i = 0; i < items; ++i)
            world.document.setComment(itemOf(world.document, i), std::string(length, 'y'));
        const std::size_t before = world.document.historyBytes();
        {
            const Document::Step step(world.document, "Change");
            act(world.document);
        }
        const std::size_t bytes = world.document.historyBytes() - before;
        EXPECT_GE(bytes, texts * items * length + items * 16) << name;
        EXPECT_LE(bytes, texts * items * length + items * 800 + 800) << name;
        world.document.undo();
        world.document.redo();
        EXPECT_EQ(world.document.historyBytes(), before + bytes) << name;
        world.document.startNew("/new.xml");
        EXPECT_EQ(world.document.historyBytes(), 0U) << name;
    }
}

}  // namespace
