// The branch dialog.
#pragma once

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Asks for a branch's name, to add a branch or to rename one.
class frmBranch {
 public:
    /// With `modify`, renames the branch `node`; otherwise adds a branch below `node`.
    frmBranch(Document& document, Desktop& desktop, Node& node, bool modify)
        : document_(document), desktop_(desktop), node_(document.tree(), &node), modify_(modify) {}

    static constexpr const char* caption = "Branch";
    Label Label1{"Branch name:"};
    TextBox txtBranchName;
    Button cmdOk{"OK"};
    Button cmdCancel{"Cancel"};

    void Form_Load();
    /// Checks the name, stores it, and closes. When the name is refused, the dialog stays open.
    void cmdOk_Click();
    void cmdCancel_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    /// The added branch; null when none was added.
    Node* added() const { return added_.get(); }
    bool confirmed() const { return added() != nullptr; }

 private:
    Document& document_;
    Desktop& desktop_;
    ConfigTree::Reference node_;
    bool modify_;
    ConfigTree::Reference added_{document_.tree()};
    bool closed_ = false;
};
