// Stories: actions of a user in the editor, each followed by what must then be seen.
//
//     > click P.A -> list: x, y
//     > mnuDelete ? yes -> message: Are you sure you want to delete A and all its items? [No]
//     tree: P[B[]]
//
// An action is a line for ScriptedUser. Expectations, with the names in `seen`, are after " -> " or
// on lines of their own. Every message must be listed; questions may be. A story stops at its first
// difference.
#include <filesystem>

#include "support/ScriptedUser.h"

namespace {

class Stories : public ::testing::TestWithParam<std::string>, protected ScriptedUser {
 protected:
    Stories() { differs = std::bind_front(&Stories::fail, this); }

    void fail(const std::string& what, const std::string& expected, const std::string& actual) {
        ADD_FAILURE_AT(GetParam().c_str(), number_)
            << "after:    " << step_ << "\nexpected " << what << ": " << withLineEnds(expected)
            << "\nactual   " << what << ": " << withLineEnds(actual.substr(0, 2000));
    }

    void runLine(const std::string& line) {
        ++number_;
        const auto parts = split(line, " -> ");
        if (line.empty() || line.starts_with("#")) return;
        for (const std::string& part : parts)
            if (!HasFailure()) part.starts_with("> ") ? act(part.substr(2)) : check(part);
    }

    void act(const std::string& action) {
        expectNoMoreMessages();
        if (HasFailure()) return;
        step_ = action;
        if (!play(Step(step_))) fail("node or row", "one of that name", "none");
        messages_.assign(desktop.messages().begin(), desktop.messages().end());
        desktop.forgetMessages();
        if (desktop.answersLeft() > 0) fail("questions", "as many as answers", "fewer");
        expectTreeAndRegistriesAgree(document);
        views_.expectUpToDate();
    }

    void check(const std::string& fact) {
        const auto [what, text] = cut(fact, ":");
        const std::string expected = text.substr(text.starts_with(" ") ? 1 : 0);
        if (what == "message") return expectMessage(expected);
        try {
            const std::string actual = seen(what, expected);
            if (actual != withLineEnds(expected)) fail(what, expected, actual);
        } catch (const RunTimeError& error) {
            fail(what, expected, error.what());
        }
    }

    static bool isQuestion(const std::string& text) {
        return text.ends_with("?") || text.ends_with("? [No]");
    }
    void expectMessage(const std::string& expected) {
        while (!messages_.empty()) {
            const std::string next = withLineEnds(messages_.front());
            messages_.pop_front();
            if (next == expected) return;
            if (!isQuestion(next)) return fail("message", expected, next);
        }
        fail("message", expected, "none");
    }
    void expectNoMoreMessages() {
        for (const std::string& text : messages_)
            if (!isQuestion(text)) fail("message", "none", text);
        messages_.clear();
    }

    /// The present value of what an expectation names. "PATH has" returns `text` if the file has
    /// it.
    std::string seen(const std::string& what, const std::string& text) {
        const auto [thing, name] = cut(what, " ");
        const ConfigTree& tree = document.tree();
        std::vector<std::string> all;
        if (what == "tree") return outline(document);
        if (what == "selected") return keyOf(tree.selected());
        if (what == "expanded") {
            for (const auto& node : tree.nodes())
                if (node->expanded()) all.push_back(node->key().string());
            return joined(all, " ");
        }
        if (what == "list" || what == "rows") {
            for (const auto& row : editor.ListView1.rows())
                if (what == "list" || row.selected) all.push_back(row.text().string());
            return joined(all, ", ");
        }
        if (thing == "row") {
            for (const std::string& cell : split(text, "; ")) {
                const std::string heading = cut(cell, " is ").first;
                all.push_back(heading + " is " + cellOf(name, heading));
            }
            return joined(all, "; ");
        }
        if (what == "columns") {
            for (const auto& column : editor.ListView1.columns())
                all.push_back(column.text + " 0." + std::to_string(std::lround(column.width * 10)));
            return joined(all, ", ");
        }
        if (what == "enabled") return stateNameOf(enabledNow());
        if (what == "view")
            return std::array{"icon", "small icon", "list", "report"}.at(
                static_cast<std::size_t>(editor.ListView1.view()));
        if (what == "visible") return editor.TreeView1.visible ? "yes" : "no";
        if (what == "saved") return document.saved ? "yes" : "no";
        if (what == "settings") {
            const GlobalSets& settings = document.settings();
            return settings.port + " " + settings.ediType + " " + std::to_string(settings.timeout);
        }
        if (what == "next")  // device, branch and item
            return std::to_string(document.deviceCounter()) + " " +
                   std::to_string(document.branchCounter()) + " " +
                   std::to_string(document.itemCounter());
        if (what == "undo") return document.undoName();
        if (what == "redo") return document.redoName();
        if (what == "clipboard") return desktop.clipboard;
        if (what == "find dialog") return forms.find == nullptr ? "closed" : "open";
        if (what == "chooser") return desktop.lastChooser;
        if (what == "recorded") return registry.calls.empty() ? "" : registry.calls.back();
        if (what == "pointer") return desktop.pointer == Pointer::normal ? "normal" : "other";
        if (what == "drop here") return keyOf(editor.treeDrag().dropHighlight());
        if (what == "opens")
            return std::string(editor.hasProperties(frmEditing::ActiveControl::tree) ? "node"
                                                                                     : "") +
                   (editor.hasProperties(frmEditing::ActiveControl::list) ? "row" : "");
        if (what == "ended") return applicationEnded ? std::to_string(exitStatus) : "no";
        if (thing == "sign")
            return editor.fileRules().faultOf(tree.nodeAt(withLineEnds(name))).text;
        if (thing == "row-sign")
            for (const auto& row : editor.ListView1.rows())
                if (row.text() == name) return editor.fileRules().faultOf(row, 0).text;
        if (thing == "caption") return (editor.*commandNamed(name).captionNow)().value_or("off");
        if (thing == "branch") return faultOf(name, FilePlace::elementName).text;
        if (thing == "text") return tree.nodeAt(name).text().string();
        if (name == "has" || name == "has not") {
            std::string bytes = disk.files.contains(thing) ? disk.files.at(thing) : "no file";
            bytes = fromWindows1252(bytes);
            std::erase(bytes, '\t');
            const bool has = bytes.find(withLineEnds(text)) != std::string::npos;
            return has == (name == "has") ? withLineEnds(text) : bytes;
        }
        return "no such expectation";
    }

 private:
    static std::string keyOf(const Node* node) {
        return node == nullptr ? "" : node->key().string();
    }
    /// The text below the heading in the row that begins with `name`, or its icons.
    std::string cellOf(const std::string& name, const std::string& heading) const {
        const auto row = std::ranges::find(editor.ListView1.rows(), name, &ListView::Row::text);
        if (row == editor.ListView1.rows().end()) return "no such row";
        if (heading == "icon") return row->icon.string().append("/").append(tagOf(row->kind));
        const auto& columns = editor.ListView1.columns();
        const auto column = std::ranges::find(columns, heading, &ListView::Column::text);
        return row->cell(static_cast<std::size_t>(column - columns.begin())).string();
    }

    TrackingViews views_{document, editor.ListView1, desktop};
    int number_ = 0;
    std::string step_;
    std::deque<std::string> messages_;
};

/// Triggers every command and event. None may have an effect while a box or a dialog is open or a
/// node is dragged.
void triggerEverything(EditorWorld& world) {
    world.editor.dropFile("/dropped.xml");
    for (const Command& command : commandTable())
        world.editor.run(command);
    for (const Command* command : toolbarCommands())
        world.editor.Toolbar1_ButtonClick(command->button.key);
    if (Node* root = world.document.tree().root()) world.editor.TreeView1_NodeClick(*root);
    world.editor.TreeView1_DblClick();
    world.editor.ListView1_Click();
    world.editor.ListView1_DblClick();
    world.editor.ListView1_ColumnClick(0);
    if (world.forms.find != nullptr) world.forms.find->cmdNext_Click();
    EXPECT_FALSE(world.editor.Form_Unload());
    // The end of the session, without questions. During a reading it would cancel that.
    if (world.editor.pnlImpStat.visible) return;
    EXPECT_TRUE(world.editor.mayEnd([] { return false; }));
}

TEST_P(Stories, ShowWhatIsWritten) {
    desktop.whileOpen = forms.whileOpen = [this] { triggerEverything(*this); };
    disk.writesSpoiledFiles = GetParam().find("/unreadable-") != std::string::npos;
    std::ifstream file(GetParam());
    for (std::string line; std::getline(file, line) && !HasFailure();)
        runLine(line);
    if (!HasFailure()) expectNoMoreMessages();
}

std::vector<std::string> storyFiles() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(TESTS_DIR "/editor/stories"))
        paths.push_back(entry.path().string());
    return paths;
}

INSTANTIATE_TEST_SUITE_P(, Stories, testing::ValuesIn(storyFiles()), [](const auto& story) {
    std::string name = std::filesystem::path(story.param).stem().string();
    std::ranges::replace(name, '-', '_');
    return name;
});

}  // namespace
