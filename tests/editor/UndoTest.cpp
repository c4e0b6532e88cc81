#include "file/CreateXML.h"
#include "support/RandomSteps.h"

namespace {

/// Everything that undo must restore: all orders, the record of each node, the saved file.
struct State {
    std::string registries;  // and everything else that sorting does not change
    std::string all;
};

State stateOf(const Document& document) {
    std::ostringstream out;
    for (const auto& node : document.tree().nodes())
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
    const std::string registries = out.str();
    for (const ConfigTree* tree : {&document.tree(), &document.detached()})
        out << (tree->root() == nullptr ? "" : contentsOf(*tree->root())) << "\n";
    FakeDisk disk;
    disk.writesSpoiledFiles = true;
    FakeDesktop desktop;
    CreateXML("/a", document, disk, desktop);
    out << disk.files["/a"] << (document.saved ? "saved\n" : "not saved\n");
    out << joined(desktop.messages(), "\n");
    return {registries, out.str()};
}

class Undo : public ::testing::Test, protected ScriptedUser {
 protected:
    Undo() { disk.writesSpoiledFiles = true; }

    std::size_t below(std::size_t n) { return random() % n; }

    /// The document must have this state, and all views must show it.
    void expectState(const std::string& state) {
        ASSERT_EQ(stateOf(document).all, state);
        expectTreeAndRegistriesAgree(document);
        views.expectUpToDate();
    }

    /// Undoes so many steps, or as many as there are, and redoes some of them.
    void goBackAndForth(std::size_t count) {
        std::vector<State> states{stateOf(document)};
        while (states.size() <= count && !document.undoName().empty() && !HasFailure()) {
            const std::string name = document.undoName();
            editor.mnuUndo_Click();
            EXPECT_EQ(document.redoName(), name);
            states.push_back(stateOf(document));
            // A step may have changed only the order of siblings.
            const bool isOrder = states.back().registries == states.rbegin()[1].registries;
            ASSERT_TRUE(isOrder || !past.empty());
            expectState(isOrder ? states.back().all : past.back());
            if (!isOrder) past.pop_back();
        }
        goneBack += states.size() - 1;
        for (auto redone = below(states.size()); redone > 0 && !HasFailure(); --redone) {
            const State before = states.back();
            states.pop_back();
            if (before.registries != states.back().registries) past.push_back(before.all);
            const std::string name = document.redoName();
            editor.mnuRedo_Click();
            EXPECT_EQ(document.undoName(), name);
            expectState(states.back().all);
        }
    }

    TrackingViews views{document, editor.ListView1, desktop};
    std::mt19937 random{walkSetting("WALK_SEED", 11)};
    RandomSteps generator{[this](std::size_t n) { return below(n); }, *this};
    std::vector<std::string> past;  // before each step that can be undone
    std::size_t goneBack = 0;
};

TEST_F(Undo, UndoAndRedoRestoreEachStateExactly) {
    const unsigned steps = walkSetting("WALK_STEPS", 30000);
    for (unsigned i = 1; i <= steps && !HasFailure(); ++i) {
        const State before = stateOf(document);
        const std::string step = generator.nextStep();
        play(Step(step));
        const State after = stateOf(document);
        SCOPED_TRACE("step " + std::to_string(i) + ": " + step + "\n" + outline(document));
        desktop.forgetMessages();
        if (step.starts_with("mnuNew") && before.all != after.all) {  // not refused
            EXPECT_EQ(document.undoName() + document.redoName(), "");
            EXPECT_TRUE(document.undo() == nullptr && document.redo() == nullptr);
            past.clear();
            continue;
        }
        if (before.registries == after.registries) continue;  // a click that sorts is no step
        past.push_back(before.all);
        EXPECT_NE(document.undoName(), "");
        EXPECT_EQ(document.redoName(), "");
        if (below(2) == 0) goBackAndForth(below(15) == 0 ? below(50) : 1);
        EXPECT_EQ(takeMessages(), "");
    }
    EXPECT_GT(goneBack, steps / 20);
}

TEST_F(Undo, ShowsTheParentOfTheFirstOfSeveralNodes) {
    open("/a", configuration(plc("P", branch("A", tag("x")) + branch("B", tag("y")))));
    {
        const Document::Step step(document, "Change");
        for (const std::string key : {"P.A.x", "P.B.y"})
            document.setComment(document.tree().nodeAt(key), "c");
        EXPECT_EQ(document.undo(), nullptr) << "within a step";
    }
    EXPECT_EQ(document.undo(), document.tree().FindNode(std::string("P.A")));
    document.setSettings({});  // outside of a step
    EXPECT_EQ(document.redo(), nullptr);
}

}  // namespace
