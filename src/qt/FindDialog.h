// The window of the find dialog.
#pragma once

#include "dialogs/frmFind.h"
#include "qt/FormDialog.h"

class QLineEdit;

/// Stays above the main window without an owner. Deletes itself when it is closed.
class FindDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit FindDialog(frmFind& form);

 protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    QLineEdit* text_;
};
