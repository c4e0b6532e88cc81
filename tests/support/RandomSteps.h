// Random user actions, with so few names that they collide.
#pragma once

#include "support/ScriptedUser.h"

/// The value of an environment variable such as WALK_SEED, or `usual`.
inline unsigned walkSetting(const char* name, unsigned usual) {
    const char* value = std::getenv(name);
    return value == nullptr ? usual : static_cast<unsigned>(std::stoul(value));
}

/// Returns a number below the given one.
using Choose = std::function<std::size_t(std::size_t below)>;

/// Generates actions for ScriptedUser.
class RandomSteps {
 public:
    RandomSteps(Choose choose, const EditorWorld& world)
        : below_(std::move(choose)), world_(world) {}

    std::string nextStep() {
        if (!next_.empty()) return std::exchange(next_, "");
        const Document& document = world_.document;
        const auto records = document.items().count() + document.branches().count();
        const bool isStuck = document.tree().nodes().size() < 5 && document.devices().count() > 2;
        if (!document.open || records > 40 || isStuck || below_(400) == 0) return "mnuNewCfg ? no";
        const auto& rows = world_.editor.ListView1.rows();
        if (below_(3) == 0 && std::ranges::any_of(rows, &ListView::Row::selected)) {
            next_ = oneOf({"mnuCopy", "mnuPasteName: Replace", "mnuPasteName: Replace",
                           "mnuPasteComment: Replace", "mnuPasteName: Cancel", ""});
            return "clipboard " + newTexts();
        }
        const auto action = below_(20);
        if (action < 4) return "click " + anyKey();
        if (action < 6) return drag();
        if (action < 8) return "rows" + anyRows();
        if (action < 9)
            return oneOf({"focus tree", "focus list", "focus none", "sort 0", "sort 1", "sort 6"});
        if (action < 10) return "doubleclick: " + properties(document.tree().selected());
        if (action < 11) return doubleClickOnRow();
        if (action < 13) return oneOf({"mnuDelete ? yes", "mnuCut ? yes"});
        if (action < 14) return oneOf({"mnuDelete ? no", "mnuCut ? no", "mnuCopy"});
        if (action < 16) return "mnuAddBranch: Branch name: = " + anyName() + "; OK; Cancel";
        if (action < 17) return "mnuAddPlc: Object Name = " + anyName() + "; OK; Exit";
        if (action < 18) return "mnuAddItem: " + newItem();
        return oneOf({"mnuPaste", "mnuPaste", "mnuCopy"});
    }

 private:
    std::string oneOf(const std::vector<const char*>& all) { return all[below_(all.size())]; }
    std::string anyName() {
        if (below_(40) == 0) return oneOf({"", "config", "New_Item", "Copied_Item", "OG.Lamp"});
        return oneOf(
            {"x", "X", "y", "A", "a", "b", "B", "D", "A.x", "OG.A", "OG", "EG", "B\u00FCro"});
    }
    std::string anyKey() {
        auto node = world_.document.tree().nodes().begin();
        for (auto skipped = below_(world_.document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return (*node)->key().string();
    }
    std::string doubleClickOnRow() {
        const auto& rows = world_.editor.ListView1.rows();
        if (rows.empty()) return "focus list";
        const SharedText text = rows[below_(rows.size())].text();
        const auto last = std::ranges::find(rows.rbegin(), rows.rend(), text, &ListView::Row::text);
        return "doublerow " + text + ": " + properties(world_.document.tree().FindNode(last->key));
    }
    std::string anyRows() {
        std::string texts;
        for (const auto& row : world_.editor.ListView1.rows())
            if (below_(2) == 0) texts += " " + row.text();
        return texts;
    }
    /// Most often as many lines as there are selected rows.
    std::string newTexts() {
        const std::string lineEnd = oneOf({"^", "^", "~^", ""});
        std::string lines;
        for (const auto& row : world_.editor.ListView1.rows())
            if (row.selected != (below_(20) == 0)) lines += anyName() + lineEnd;
        return lines;
    }
    std::string drag() {
        const std::string from = anyKey(), to = anyKey();
        // Rarely to the root, as a node there cannot be saved.
        const bool toSpace = to == Document::rootKey && below_(20) != 0;
        return "drag " + from + " to " + (toSpace ? "space" : to) + oneOf({"", " with 2"});
    }
    std::string properties(const Node* node) {
        const auto kind = node == nullptr ? NodeKind::config : node->kind();
        if (kind == NodeKind::branch) return "Branch name: = " + anyName() + "; OK; Cancel";
        if (kind == NodeKind::plc) return "Object Name = " + anyName() + "; OK; Exit";
        return "Item Name = " + anyName() + "; Comment = " + anyName() + "; Confirm Modify; Exit";
    }
    std::string newItem() {
        const std::string fields = "Item Name = " + anyName() + "; Comment = " + anyName();
        return fields + "; Group Address = 1/2/3" +
               oneOf({"; Add and Exit; Exit",
                      "; Add Vector....; INSERT NUMBER OF ITEMS TO ADD = 3; OK; Exit"});
    }

    Choose below_;
    std::string next_;  // follows in any case, if not empty
    const EditorWorld& world_;
};
