// The branch dialog.
#pragma once

#include <memory>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Asks for a branch's name, to add a branch below the selected node or, with the document's
/// branch modify flag set, to rename the selected one.
class frmBranch {
 public:
    /// `branch` is the record that is renamed; none when one is added.
    frmBranch(Document& document, Desktop& desktop, std::shared_ptr<clsBranch> branch = nullptr)
        : document_(document), desktop_(desktop), branch_(std::move(branch)) {}

    static constexpr const char* caption = "Branch";
    Label Label1{"Branch name:"};
    TextBox txtBranchName;
    Button cmdOk{"OK"};
    Button cmdCancel{"Cancel"};

    void Form_Load();
    /// Checks, stores and closes; a refused name leaves the dialog open.
    void cmdOk_Click();
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }

 private:
    void storeChanged(const std::shared_ptr<clsBranch>& branch);

    Document& document_;
    Desktop& desktop_;
    std::shared_ptr<clsBranch> branch_;
    bool closed_ = false;
};
