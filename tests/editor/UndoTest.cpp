#include <sstream>

#include "file/CreateXML.h"
#include "support/RandomSteps.h"

namespace {

void describe(const ConfigTree& tree, std::ostream& out) {
    if (tree.root() == nullptr) return;
    for (TreeWalk walk(*tree.root()); const Node* node = walk.next();)
        out << walk.depth() << node->key().string() << "=" << node->text().string() << "\n";
}

struct State {
    std::string registries;  // and everything else whose order is fixed
    std::string orders;      // of siblings, and the saved file, which depends on them
    bool saved;

    std::string all() const { return orders + registries; }
};

/// Everything that undo must restore: all orders, the record of each node, the saved file.
State stateOf(const Document& document) {
    std::ostringstream out;
    for (const auto& node : document.tree().nodes())
        if (node->parent() != nullptr)
            out << node->key().string() << "=" << node->text().string() << "\n";
    for (const auto& [key, device] : document.devices())
        out << key.string() << device << device->GetXmlTag() << "\n";
    for (const auto& [key, branch] : document.branches())
        out << key.string() << branch << branch->sKey.string() << branch->sName.string() << "\n";
    for (const auto& [key, item] : document.items()) {
        std::string fields;
        item->GetXmlTag(0, fields);
        out << key.string() << item << item->sKey.string() << item->nElements << fields << "\n";
    }
    const GlobalSets& settings = document.settings();
    out << settings.port << settings.ediType << settings.timeout << " " << document.deviceCounter()
        << " " << document.branchCounter() << " " << document.itemCounter() << "\n";
    std::ostringstream orders;
    describe(document.tree(), orders);
    describe(document.detached(), orders);
    FakeDisk disk;
    disk.writesSpoiledFiles = true;
    FakeDesktop desktop;
    CreateXML("/a", document, disk, desktop);
    orders << disk.files["/a"];
    for (const std::string& message : desktop.messages())
        orders << message;
    return {out.str(), orders.str(), document.saved};
}

class Undo : public ::testing::Test, protected ScriptedUser {
 protected:
    Undo() { disk.writesSpoiledFiles = true; }

    void expectConsistentState() {
        expectTreeAndRegistriesAgree(document);
        views.expectUpToDate();
    }
    std::size_t below(std::size_t n) { return random() % n; }
    bool oneIn(std::size_t n) { return below(n) == 0; }

    /// Undoes some steps and redoes some of them. Each state must equal the earlier one.
    void goBackAndForth() {
        std::vector<State> states{stateOf(document)};
        for (auto count = below(50); count > 0 && !document.undoName().empty(); --count) {
            editor.mnuUndo_Click();
            states.push_back(stateOf(document));
            expectConsistentState();
            // A step may have changed only the order of siblings.
            if (states.back().registries == (states.rbegin() + 1)->registries) continue;
            ASSERT_FALSE(past.empty());
            ASSERT_EQ(states.back().all(), past.back());
            past.pop_back();
        }
        const std::size_t stay = below(states.size());
        for (auto state = states.size() - 1; state > stay; --state) {
            if (states[state].registries != states[state - 1].registries) {
                past.push_back(states[state].all());
            }
            editor.mnuRedo_Click();
            ASSERT_EQ(stateOf(document).all(), states[state - 1].all());
            expectConsistentState();
        }
        goneBack += states.size() - 1;
    }

    TrackingViews views{document, editor.ListView1, desktop};
    std::mt19937 random{walkSetting("WALK_SEED", 11)};
    RandomSteps generator{[this](std::size_t n) { return below(n); }, *this};
    std::vector<std::string> past;  // before each step that can be undone
    std::size_t taken = 0, goneBack = 0;
};

TEST_F(Undo, UndoAndRedoRestoreEachStateExactly) {
    const unsigned steps = walkSetting("WALK_STEPS", 6000);
    for (unsigned i = 1; i <= steps && !HasFailure(); ++i) {
        const State before = stateOf(document);
        const std::string step = generator.nextStep();
        play(Step(step));
        const State after = stateOf(document);
        SCOPED_TRACE("step " + std::to_string(i) + ": " + step + "\n" + outline(document));
        desktop.forgetMessages();
        if (step.starts_with("mnuNew") && before.all() != after.all()) {  // not refused
            EXPECT_EQ(document.undoName() + document.redoName(), "");
            past.clear();
            continue;
        }
        if (before.registries == after.registries) continue;  // a click that sorts is no step
        past.push_back(before.all());
        ++taken;
        ASSERT_NE(document.undoName(), "");
        EXPECT_EQ(document.redoName(), "");
        if (oneIn(2)) continue;
        const std::string name = document.undoName();
        editor.mnuUndo_Click();
        ASSERT_EQ(stateOf(document).all(), before.all());
        EXPECT_EQ(document.saved, before.saved);
        EXPECT_EQ(document.redoName(), name);
        expectConsistentState();
        editor.mnuRedo_Click();
        ASSERT_EQ(stateOf(document).all(), after.all());
        EXPECT_EQ(document.saved, after.saved);
        EXPECT_EQ(document.undoName(), name);
        expectConsistentState();
        if (oneIn(15)) goBackAndForth();
        EXPECT_EQ(takeMessages(), "");
    }
    EXPECT_GT(taken, steps / 10);
    EXPECT_GT(goneBack, steps / 50);
}

}  // namespace
