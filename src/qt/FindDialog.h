// The window of the find dialog.
#pragma once

#include "dialogs/frmFind.h"
#include "qt/FormDialog.h"

class QLineEdit;

/// Stands beside the main window, without an owner, and deletes itself when it is closed.
class FindDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit FindDialog(frmFind& form);

 protected:
    void changeEvent(QEvent* event) override;

 private:
    QLineEdit* text_;
};
