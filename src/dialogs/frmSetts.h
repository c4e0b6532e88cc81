// The dialog of the global settings.
#pragma once

#include <optional>

#include "base/RunTimeError.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Shows and changes the bus connection that new devices are given. It takes anything: an empty
/// port, a type that no coupler has, a time-out of 0 or less.
class frmSetts {
 public:
    explicit frmSetts(Document& document) : document_(document) {}

    static constexpr const char* caption = "EDI Global Settings";
    Label lblPortName{"Port Name"};
    ComboBox cmbPort;
    Label lblBaud{"EDI Type"};
    ComboBox cmbEdiType;
    Label lblTimeout{"RX Timeout (ms)"};
    TextBox txtTimeout;
    Button cmdApply{"OK"};
    Button cmdExit{"Exit"};

    void Form_Load();
    void cmdApply_Click();
    void cmdExit_Click() { closed_ = true; }

    bool closed() const { return closed_; }

    /// What cmdApply_Click failed with: the one handler that does not trap its errors. A
    /// time-out that does not fit 32 bits ends the application, with port and EDI type changed.
    const std::optional<RunTimeError>& unhandledError() const { return unhandledError_; }

 private:
    Document& document_;
    bool closed_ = false;
    std::optional<RunTimeError> unhandledError_;
};
