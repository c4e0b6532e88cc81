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
    txtBranchName.getsFocus = true;  // if the dialog stays open, a message refused this name
    reportErrors(desktop_, "cmdOk_Click", [&] {
        // Deliberate: this is the only check. An empty name is accepted and stored.
        const std::string& name = txtBranchName.text;
        Node& node = node_.node();
        if (!CheckDuplNames(NodeKind::branch, name, node, modify_, desktop_)) return;
        if (modify_) {
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
