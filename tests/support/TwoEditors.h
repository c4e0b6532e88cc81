// The editor and the naive model side by side.
#pragma once

#include "support/NaiveEditor.h"

class TwoEditors : public ScriptedUser {
 public:
    TwoEditors() {
        disk.writesSpoiledFiles = true;
        differs = [this](const auto&...) { dialogDiffers_ = true; };
        forms.whenShown<frmReplace>([this](frmReplace& form) {
            playDialog(form);
            for (std::size_t row = 1; form.accepted() && row < form.faults.size(); ++row)
                signs_ += form.faults[row].empty() ? '.' : '!';
        });
    }

    /// Performs the step in both. Returns the difference of their states, or "".
    std::string differenceAfter(const std::string& line) {
        const Step step(line);
        desktop.forgetMessages();
        signs_.clear();
        if (!play(step) || dialogDiffers_) return "";
        naive_.perform(step);
        const State expected = naive_.state(), actual = state();
        desktop.forgetMessages();
        for (std::size_t i = 0; i < expected.size(); ++i)
            if (const auto& [name, value] = expected[i]; expected[i] != actual[i])
                return "step:     " + line + "\nexpected " + name + ": " + value + "\nactual   " +
                       actual[i].first + ": " + actual[i].second;
        return "";
    }

 private:
    State state() const {
        std::string nodes, records, rows, messages;
        for (const ConfigTree* tree : {&document.tree(), &document.detached()}) {
            for (TreeWalk walk(*tree->root()); const Node* node = walk.next();)
                nodes.append(tagOf(node->kind())).append(" " + node->key() + ", ");
            nodes += "| ";
        }
        for (const auto& [key, device] : document.devices())
            records += key + ", ";
        for (const auto& [key, branch] : document.branches())
            records += key + ", ";
        for (const auto& [key, item] : document.items())
            records += key + ("=" + item->sKey) + ("/" + item->sComment) + ", ";
        for (const auto& row : editor.ListView1.rows())
            rows +=
                row.key + ("=" + row.text()) + ("/" + row.cell(1)) + (row.selected ? " *, " : ", ");
        for (const std::string& message : desktop.messages())
            messages += message + "\n";
        return {{"nodes", nodes},
                {"records", records},
                {"list", rows},
                {"selected", document.tree().selected()->key().string()},
                {"enabled", stateNameOf(enabledNow())},
                {"saved", document.saved ? "yes" : "no"},
                {"next item", std::to_string(document.itemCounter())},
                {"clipboard", desktop.clipboard},
                {"messages", messages},
                {"signs of the preview", signs_}};
    }

    NaiveEditor naive_;
    std::string signs_;
    bool dialogDiffers_ = false;  // in shortened sequences of steps
};
