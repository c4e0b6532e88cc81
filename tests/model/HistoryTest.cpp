#include "support/EditorWorld.h"

namespace {

constexpr std::size_t items = 10;
constexpr std::size_t length = 10'000;  // of each name and comment

template <typename Act>
void forEachItem(Document& document, const Act& act) {
    for (std::size_t i = 0; i < items; ++i)
        act(*document.tree().nodeAt("P.F").GetChildren().at(i), std::to_string(i));
}

/// The step must count `kept` bytes for each item, and not much more.
void expectBytes(std::size_t kept, const std::function<void(Document&)>& act) {
    std::string contents;
    for (std::size_t i = 0; i < items; ++i)
        contents += tag(std::to_string(i) + std::string(length, 'x'));
    EditorWorld world;
    Document& document = world.document;
    world.open("/house.xml", configuration(plc("P", branch("F", contents)) + plc("Q")));
    forEachItem(document, [&](Node& node, const auto& /*number*/) {
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

TEST(History, CountsTheTextsThatAStepKeeps) {
    expectBytes(length, [](auto& it) {
        forEachItem(it, [&](auto& node, auto) { it.setComment(node, ""); });
    });
    expectBytes(length + 100, [](auto& it) {
        forEachItem(it, [&](auto& node, auto number) { it.renameItem(node, number); });
    });
    const auto at = [](Document& it, const char* key) -> Node& { return it.tree().nodeAt(key); };
    expectBytes(length + 100, [&](auto& it) { it.renameBranch(at(it, "P.F"), "G"); });
    expectBytes(2 * length + 300, [&](auto& it) { it.RemoveSubtree(at(it, "P.F")); });
    expectBytes(16, [&](auto& it) { it.move(it.placementOf(at(it, "P"), at(it, "Q"))); });
}

}  // namespace
