// The dialogs as windows.
#pragma once

#include <QPointer>

#include "dialogs/Forms.h"

class QDialog;

/// Opens the window of each form. showModal() returns when the dialog is closed.
class QtForms : public Forms {
 public:
    QtForms() = default;
    QtForms(const QtForms&) = delete;
    QtForms& operator=(const QtForms&) = delete;
    ~QtForms() override;

    void showModal(frmItems& form) override;
    void showModal(CommonProperties& form) override;
    void showModal(frmPLC& form) override;
    void showModal(frmBranch& form) override;
    void showModal(frmSetts& form) override;
    void showModal(frmReplace& form) override;
    void show(frmFind& form) override;
    void close(frmFind& form) override;
    void showAbout() override;

 private:
    QPointer<QDialog> find_;
};
