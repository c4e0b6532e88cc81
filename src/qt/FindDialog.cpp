#include "qt/FindDialog.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

FindDialog::FindDialog(frmFind& form)
    : FormDialog(
          frmFind::caption, [&form] { return !form.loaded(); }, [&form] { form.cmdCancel_Click(); },
          nullptr),
      text_(bind("txtFind", form.txtFind)) {
    setObjectName("frmFind");
    setAttribute(Qt::WA_DeleteOnClose);
    auto* find = bind("cmdFind", form.cmdFind, [&form] { form.cmdFind_Click(); });
    text_->setMinimumWidth(text_->fontMetrics().averageCharWidth() * 32);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(find);
    auto* next = bind("cmdNext", form.cmdNext, [&form] { form.cmdNext_Click(); });
    buttons->addWidget(next);
    // In the main window too, as long as this dialog is open.
    new QShortcut(
        Qt::Key_F3, next, [next] { next->click(); }, Qt::ApplicationShortcut);
    buttons->addWidget(bind("cmdCancel", form.cmdCancel, [&form] { form.cmdCancel_Click(); }));
    auto* column = new QVBoxLayout(this);
    column->addWidget(bind(form.lblName, 'T', text_));
    column->addWidget(text_);
    column->addStretch();
    column->addLayout(buttons);
    find->setDefault(true);
    showForm();
}

/// Form_Activate: the text has the keyboard whenever the dialog comes to the front.
void FindDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) text_->setFocus();
    FormDialog::changeEvent(event);
}
