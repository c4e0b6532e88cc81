// The device dialog.
#pragma once

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/KeyFilters.h"
#include "model/Document.h"

/// Name, port, EDI type and receive time-out (milliseconds) of one device, to add it or to change
/// it.
class frmPLC {
 public:
    /// To change the device `node` or, without `modify`, to add one; then `node` is the node that
    /// is selected.
    frmPLC(Document& document, Desktop& desktop, Node& node, bool modify)
        : document_(document), desktop_(desktop), node_(document.tree(), &node), modify_(modify) {}

    // Spelled so on purpose: users know it under this name.
    static constexpr const char* caption = "Phisical Group Properties";
    Label Label6{"Object Name"};
    TextBox txtName;
    Label lblIP{"BCU Port"};
    ComboBox cmbPort;
    Label lblId{"EDI Type"};
    ComboBox cmbEdiType;
    Label lblPassword{"Receive Timeout (ms)"};
    TextBox txtTimeout;
    Button cmdApply{"OK"};
    Button cmdExit{"Exit"};

    void Form_Load();
    int txtName_KeyPress(int code) const { return filterNameKey(code); }
    /// False after telling the user what is wrong with the fields.
    bool CheckPlcFields();
    /// Checks, stores and closes. Wrong fields close the dialog too, without storing; only a
    /// refused name leaves it open.
    void cmdApply_Click();
    void cmdExit_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    /// The device that was added; null when there is none.
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
