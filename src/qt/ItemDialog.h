// The window of the item dialog.
#pragma once

#include "dialogs/frmItems.h"
#include "qt/FormDialog.h"

class ItemDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit ItemDialog(frmItems& form);

 private:
    QWidget* buildFields();
    QWidget* buildAddress();
    QWidget* buildFlag();
    QWidget* buildCountPanel();
    QLayout* buildButtons();
    void showCountPanel(bool visible);

    frmItems& form_;
    QWidget* fields_ = nullptr;
    QWidget* panel_ = nullptr;
    QLineEdit* name_ = nullptr;
    QLineEdit* count_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* okCount_ = nullptr;
};
