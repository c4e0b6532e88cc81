// The window of the preview of pasted texts.
#pragma once

#include "dialogs/frmReplace.h"
#include "qt/FormDialog.h"

/// The grid's columns share the dialog's width in the proportions of the form.
class ReplaceDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit ReplaceDialog(frmReplace& form);

 protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

 private:
    void shareWidth();

    const Grid& content_;
    class QTableView* grid_;
};
