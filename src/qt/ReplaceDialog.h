// The window that shows pasted texts before they replace others.
#pragma once

#include "dialogs/frmReplace.h"
#include "qt/FormDialog.h"

class QTableView;

/// Shows the old and new texts of a frmReplace. The columns of the grid share the width of the
/// dialog in the proportions of the form; both columns of texts are equally wide.
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
