#include "dialogs/frmBranch.h"

#include <string>

#include "base/Reporting.h"
#include "model/Checks.h"
#include "model/Generale.h"

void frmBranch::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        txtBranchName.text = document_.branchDialog.modify
                                 ? branch_->sName
                                 : "NewBranch" + std::to_string(document_.branchCounter);
    });
}

void frmBranch::cmdOk_Click() {
    reportErrors(desktop_, "cmdOk_Click", [&] {
        const bool modify = document_.branchDialog.modify;
        // The only check: an emptied name passes it and is stored. What is wrong with a name is
        // for its user to see, not for this dialog to decide.
        const std::string& name = txtBranchName.text;
        if (!CheckDuplNames(NodeKind::branch, name, document_.tree(), modify, desktop_)) return;
        const auto branch = std::make_shared<clsBranch>();
        branch->sName = name;
        branch->sKey = BuildNodeKey(name, document_.tree().selected(), modify);
        if (modify) {
            storeChanged(branch);
        } else {
            requireFreeKey(document_, NodeKind::branch, branch->sKey);
            document_.branches().add(branch, branch->sKey);
            document_.branchDialog.confirmed = true;
        }
        document_.saved = false;
        closed_ = true;
    });
}

void frmBranch::storeChanged(const std::shared_ptr<clsBranch>& branch) {
    Node& node = selectedNode(document_);
    requireFreeKeys(document_, node, branch->sKey);
    document_.branches().remove(node.key());
    document_.branches().add(branch, branch->sKey);
    document_.tree().setText(node, branch->sName);
    document_.tree().setKey(node, branch->sKey);
    UpdateChildKeys(document_, node);
}
