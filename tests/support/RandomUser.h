// A user who does anything whatever.
#pragma once

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "support/EditorWorld.h"

namespace randomUser {

using Names = std::vector<const char*>;
inline const Names names{"x",      "X",        "y",       "A",        "a",           "A.x",
                         "a.X",    "A.A",      "B",       "b",        "D",           "D.x",
                         "1OG",    "config.A", "Büro",    "BÜRO",     "tag",         "1.OG",
                         "\u20AC", "",         "OG.Lamp", "New_Item", "Copied_Item", "A B"};
inline const Names plainNames{"x", "X", "y", "A", "a", "b", "B", "D", "A.x", "OG.A", "Büro"};
inline const Names actions{
    "click",      "click",        "click",      "click",        "rows",         "rows",
    "drag",       "drag",         "changeNode", "changeRow",    "search",       "focusTree",
    "focusList",  "sort",         "mnuFind",    "mnuIcon",      "mnuSetts",     "mnuDelete",
    "mnuCut",     "mnuCopy",      "mnuPaste",   "mnuPaste",     "mnuAddPlc",    "mnuAddItem",
    "mnuAddItem", "mnuAddBranch", "mnuAddItem", "mnuPasteName", "mnuAddBranch", "mnuPasteComment"};
inline const Names fileActions{"mnuNewCfg", "mnuCloseCfg", "mnuSaveCfg", "mnuSaveAs", "mnuImpCfg"};

}  // namespace randomUser

/// A user who does anything whatever, the same every time for one seed, with names so few that they
/// collide.
class RandomUser : public EditorWorld {
 public:
    using Names = randomUser::Names;

    explicit RandomUser(unsigned seed) : random(seed) {
        disk.writesSpoiledFiles = true;
        forms.whenShown<frmPLC>([this](frmPLC& form) {
            if (!oneIn(3)) form.txtName.text = anyName();
            oneIn(6) ? form.cmdExit_Click() : form.cmdApply_Click();
        });
        forms.whenShown<frmBranch>([this](frmBranch& form) {
            if (!oneIn(9)) form.txtBranchName.text = anyName();
            oneIn(6) ? form.cmdCancel_Click() : form.cmdOk_Click();
        });
        forms.whenShown<frmItems>([this](frmItems& form) {
            if (!oneIn(9)) form.txtItemName.text = anyName();
            if (oneIn(9)) form.cmdCancel_Click();
            if (form.modify()) return form.cmdOk_Click();
            ++items;  // each has an address of its own
            for (std::size_t part = 0; part < 3; ++part)
                form.txtAddress[part].text = std::to_string((items >> (8 * part)) & 255);
            if (!oneIn(9)) return oneIn(2) ? form.cmdOk_Click() : form.cmdAdd_Click();
            form.cmdGroup_Click();
            form.txtNumbItems.text = "3";
            form.cmdOkNumber_Click();
        });
        forms.whenShown<frmReplace>(
            [this](frmReplace& form) { oneIn(6) ? form.Command1_Click() : form.Command2_Click(); });
        forms.whenShown<frmSetts>(&frmSetts::cmdApply_Click);
    }
    std::size_t below(std::size_t n) { return random() % n; }
    bool oneIn(std::size_t n) { return below(n) == 0; }
    const char* oneOf(const Names& all) { return all[below(all.size())]; }
    const char* anyName() { return oneOf(oneIn(40) ? randomUser::names : randomUser::plainNames); }
    std::string anyKey() {
        auto node = document.tree().nodes().begin();
        for (auto skipped = below(document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return (*node)->key().string();
    }

    /// Does one thing; tells what.
    std::string step() {
        while (desktop.answersLeft() < 3)
            desktop.willAnswer({std::array{Answer::yes, Answer::no, Answer::cancel}[below(5) / 2]});
        disk.files["/b.esf"] = "t\r\nC.L.1/1/1\tx\tEIS 1\r\nC.A.1/1/2\tx\tEIS 1\r\n";
        disk.files["/a.xml"] = configuration(plc("A") + plc("F", branch("A", tag("x"))));
        desktop.clipboard = oneOf({"", "A\r\n", "A.x\n", "x\ny\n", "X\nA\n", "z\nNew_Item\n"});
        const auto records = document.items().count() + document.branches().count();
        const bool isStuck = document.tree().nodes().size() < 5 && document.devices().count() > 2;
        const bool begin = !document.open || records > 40 || isStuck;
        document.saved |= begin;
        const std::string action = begin        ? oneOf({"mnuNewCfg", "mnuOpenCfg", "mnuImpCfg"})
                                   : oneIn(400) ? oneOf(randomUser::fileActions)
                                                : oneOf(randomUser::actions);
        desktop.willChoose(action == "mnuImpCfg" ? "/b.esf" : "/a.xml");
        return perform(action);
    }
    std::string perform(const std::string& action) {
        const std::string key = action == "click" || action == "drag" ? anyKey() : "";
        if (action == "click") click(key);
        if (action == "changeNode") editor.TreeView1_DblClick();
        if (action == "changeRow") editor.ListView1_DblClick();
        if (action == "sort") editor.ListView1_ColumnClick(below(6));
        if (action == "focusTree") editor.activeControl = frmEditing::ActiveControl::tree;
        if (action == "focusList") editor.activeControl = frmEditing::ActiveControl::list;
        if (action == "rows") {
            for (std::size_t row = 0; row < editor.ListView1.rows().size(); ++row)
                oneIn(2) ? selectRow(row) : editor.ListView1.setSelected(row, false);
            editor.ListView1_Click();
        }
        if (action == "search" && forms.find != nullptr) {
            forms.find->txtFind.text = oneOf(randomUser::names);
            forms.find->cmdNext_Click();
        }
        for (const Command& command : commandTable())
            if (command.name == action) editor.run(command);
        if (action != "drag") return action + " " + key;
        const std::string target = anyKey();
        const int shift = oneIn(2) ? TreeDrag::ctrlMask : 0;
        // Rarely to the root: what stands there cannot be saved.
        if (target != Document::rootKey || oneIn(20)) drag(key, target, shift);
        return (shift == 0 ? "move " : "copy ") + key + " to " + target;
    }

    std::mt19937 random;
    int items = 0;  // added so far
};
