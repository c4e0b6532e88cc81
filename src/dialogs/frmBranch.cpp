#include "dialogs/frmBranch.h"

#include <string>

#include "base/Reporting.h"
#include "model/Checks.h"
#include "model/Keys.h"
#include "model/ProposedNames.h"

void frmBranch::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        txtBranchName.text =
            modify_ ? document_.branches().at(node_.node().key()).sName.string()
                    : std::string(proposedBranchName) + std::to_string(document_.branchCounter());
    });
}

void frmBranch::cmdOk_Click() {
    txtBranchName.getsFocus = true;  // unless the dialog closes, a message is about it
    reportErrors(desktop_, "cmdOk_Click", [&] {
        // The only check: an emptied name passes it and is stored. What is wrong with a name is
        // for its user to see, not for this dialog to decide.
        const std::string& name = txtBranchName.text;
        Node& node = node_.node();
        if (!CheckDuplNames(NodeKind::branch, name, node, modify_, desktop_)) return;
        if (modify_) {
            const Document::Step step(document_, "Rename");
            document_.renameBranch(node, name);
        } else {
            const auto branch = std::make_shared<clsBranch>();
            branch->sName = name;
            branch->sKey = BuildNodeKey(name, &node, false);
            const Document::Step step(document_, "Add");
            added_ = &document_.addByHand(branch, node);
        }
        closed_ = true;
    });
}
