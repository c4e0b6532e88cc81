// The window of the item dialog.
#pragma once

#include "dialogs/frmItems.h"
#include "qt/FormDialog.h"

/// Changes one item, or adds items: shows a frmItems.
class ItemDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit ItemDialog(frmItems& form);

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    class HintLabel;

    QWidget* buildFields();
    QWidget* buildAddress();
    QWidget* buildFlag();
    QWidget* buildCountPanel();
    void showCountPanel(bool visible);
    bool enterAddress(std::size_t part, const QString& text);
    void addressChanged(std::size_t part, const QString& text);

    frmItems& form_;
    QWidget* fields_ = nullptr;
    QWidget* panel_ = nullptr;
    QLineEdit* name_ = nullptr;
    QList<QObject*> address_;
    HintLabel* hint_ = nullptr;
    QLineEdit* count_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* okCount_ = nullptr;
    int grownBy_ = 0;  // by how many pixels the count panel has made the dialog higher
};
