// The device dialog.
#pragma once

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/KeyFilters.h"
#include "model/Document.h"

/// Edits name, port, EDI type and receive time-out (milliseconds) of a device, to add or to change
/// it.
class frmPLC {
 public:
    /// With `modify`, changes the device `node`; otherwise adds a device, and `node` is the
    /// selected node.
    frmPLC(Document& document, Desktop& desktop, Node& node, bool modify)
        : document_(document), desktop_(desktop), node_(document.tree(), &node), modify_(modify) {}

    // Deliberate: "Phisical" is misspelled. Users know the dialog by this title.
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
    /// True when all fields are valid; otherwise shows a message about the first invalid one.
    bool CheckPlcFields();
    /// Checks, stores and closes. Deliberate: invalid fields also close the dialog, without
    /// storing. Only when the name is already used, or storing fails, the dialog stays open.
    void cmdApply_Click();
    void cmdExit_Click() { closed_ = true; }

    bool closed() const { return closed_; }
    /// The added device; null when none was added.
    Node* added() const { return added_.get(); }
    bool confirmed() const { return added() != nullptr; }

 private:
    void store();

    Document& document_;
    Desktop& desktop_;
    ConfigTree::Reference node_;
    bool modify_;
    ConfigTree::Reference added_{document_.tree()};
    bool closed_ = false;
};
