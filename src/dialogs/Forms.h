// How commands show dialogs.
#pragma once

class CommonProperties;
class frmBranch;
class frmFind;
class frmItems;
class frmPLC;
class frmReplace;
class frmSetts;

/// Shows a loaded form as a dialog. The dialog takes over what the user enters, calls the form's
/// handlers, and shows what the form says. A modal one returns when the form has closed itself.
class Forms {
 public:
    virtual ~Forms() = default;

    virtual void showModal(frmItems& form) = 0;
    virtual void showModal(CommonProperties& form) = 0;
    virtual void showModal(frmPLC& form) = 0;
    virtual void showModal(frmBranch& form) = 0;
    virtual void showModal(frmSetts& form) = 0;
    virtual void showModal(frmReplace& form) = 0;
    /// Beside the main window, without an owner; in front again when it is shown already.
    virtual void show(frmFind& form) = 0;
    /// Takes the dialog away; the form may not live any longer.
    virtual void close(frmFind& form) = 0;
    /// The about box, which has no rules.
    virtual void showAbout() = 0;
};
