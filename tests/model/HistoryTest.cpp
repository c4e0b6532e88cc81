// The memory that undo steps are said to take.
#include "support/EditorWorld.h"

namespace {

constexpr std::size_t items = 10;
constexpr std::size_t length = 10'000;

TEST(History, CountsTheTextsThatAStepKeeps) {
    const auto forEachItem = [](Document& document, const auto& act) {
        for (std::size_t i = 0; i < items; ++i)
            act(*document.tree().nodeAt("P.F").GetChildren().at(i), std::to_string(i));
    };
    const struct {
        std::size_t kept;  ///< bytes for each item
        std::function<void(Document&)> act;
    } steps[] = {
        {length,
         [&](auto& it) { forEachItem(it, [&](auto& node, auto) { it.setComment(node, ""); }); }},
        {length + 100,
         [&](auto& it) {
             forEachItem(it, [&](auto& node, auto name) { it.renameItem(node, name); });
         }},
        {length + 100, [](auto& it) { it.renameBranch(it.tree().nodeAt("P.F"), "G"); }},
        {2 * length + 300, [](auto& it) { it.RemoveSubtree(it.tree().nodeAt("P.F")); }},
        {16,
         [](auto& it) { it.move(it.placementOf(it.tree().nodeAt("P"), it.tree().nodeAt("Q"))); }}};
    for (const auto& [kept, act] : steps) {
        std::string contents;
        for (std::size_t i = 0; i < items; ++i)
            contents += tag(std::to_string(i) + std::string(length, 'x'));
        EditorWorld world;
        Document& document = world.document;
        world.open("/house.xml", configuration(plc("P", branch("F", contents)) + plc("Q")));
        forEachItem(document, [&](Node& node, const auto& /*name*/) {
            document.setComment(node, std::string(length, 'y'));
        });
        const std::size_t before = document.historyBytes();
        {
            const Document::Step step(document, "Change");
            act(document);
        }
        const std::size_t bytes = document.historyBytes() - before;
        EXPECT_GE(bytes, kept * items);
        EXPECT_LE(bytes, kept * items + items * 800 + 800);
        document.undo();
        document.redo();
        EXPECT_EQ(document.historyBytes(), before + bytes);
        document.startNew("/new.xml");
        EXPECT_EQ(document.historyBytes(), 0U);
    }
}

}  // namespace
