// How commands show dialogs.
#pragma once

class frmBranch;
class frmItems;
class frmPLC;
class frmSetts;

/// Shows a loaded form as a modal dialog and returns when the form has closed itself. The dialog
/// takes over what the user enters, calls the form's handlers, and shows what the form says.
class Forms {
 public:
    Forms() = default;
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;
    Forms(Forms&&) = delete;
    Forms& operator=(Forms&&) = delete;
    virtual ~Forms() = default;

    virtual void showModal(frmItems& form) = 0;
    virtual void showModal(frmPLC& form) = 0;
    virtual void showModal(frmBranch& form) = 0;
    virtual void showModal(frmSetts& form) = 0;
    /// The about box, which has no rules.
    virtual void showAbout() = 0;
};
