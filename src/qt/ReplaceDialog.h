// The window of the preview of pasted texts.
#pragma once

#include "dialogs/frmReplace.h"
#include "qt/FormDialog.h"

class QTableView;

/// The grid's columns share the dialog's width in the proportions of the form; those of the texts
/// are equally wide.
class ReplaceDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit ReplaceDialog(frmReplace& form);

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    const Grid& content_;
    QTableView* grid_;
};
