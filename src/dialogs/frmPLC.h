// The device dialog.
#pragma once

#include <memory>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "dialogs/KeyFilters.h"
#include "model/Document.h"

/// Name, port, EDI type and receive time-out (milliseconds) of one device, to add it or, with
/// the document's device modify flag set, to change the selected one.
class frmPLC {
 public:
    /// `device` is the record that is changed; none when one is added.
    frmPLC(Document& document, Desktop& desktop, std::shared_ptr<clsPLC> device = nullptr)
        : document_(document), desktop_(desktop), device_(std::move(device)) {}

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

 private:
    void storeChanged(const std::shared_ptr<clsPLC>& device);

    Document& document_;
    Desktop& desktop_;
    std::shared_ptr<clsPLC> device_;
    bool closed_ = false;
};
