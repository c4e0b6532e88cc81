// The interface by which commands show dialogs.
#pragma once

class CommonProperties;
class frmBranch;
class frmFind;
class frmItems;
class frmPLC;
class frmReplace;
class frmSetts;

/// Shows a loaded form as a dialog. The dialog copies what the user enters to the form, calls the
/// form's handlers, and shows the state of the form. showModal() returns when the form has closed
/// itself.
class Forms {
 public:
    virtual ~Forms() = default;

    virtual void showModal(frmItems& form) = 0;
    virtual void showModal(CommonProperties& form) = 0;
    virtual void showModal(frmPLC& form) = 0;
    virtual void showModal(frmBranch& form) = 0;
    virtual void showModal(frmSetts& form) = 0;
    virtual void showModal(frmReplace& form) = 0;
    /// Shows the dialog beside the main window, without an owner. When it is already shown, brings
    /// it to the front.
    virtual void show(frmFind& form) = 0;
    /// Closes the dialog. The form may be destroyed afterwards.
    virtual void close(frmFind& form) = 0;
    /// Shows the about box, which has no rules.
    virtual void showAbout() = 0;
};
