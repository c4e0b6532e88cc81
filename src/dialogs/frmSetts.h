// The dialog for the global settings.
#pragma once

#include <optional>

#include "base/RunTimeError.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Edits the bus connection that is proposed for new devices. Deliberate: it accepts any value: an
/// empty port, an unknown EDI type, a time-out of 0 or less.
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

    /// The error of cmdApply_Click. Deliberate: this is the only handler that does not trap its
    /// errors. A time-out that does not fit 32 bits ends the application, after port and EDI type
    /// were changed.
    const std::optional<RunTimeError>& unhandledError() const { return unhandledError_; }

 private:
    Document& document_;
    bool closed_ = false;
    std::optional<RunTimeError> unhandledError_;
};
