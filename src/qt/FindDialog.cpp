#include "qt/FindDialog.h"

#include <QAction>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "qt/Icons.h"

FindDialog::FindDialog(frmFind& form)
    : FormDialog(
          frmFind::caption, [&form] { return !form.loaded(); }, [&form] { form.cmdCancel_Click(); },
          nullptr),
      text_(bind("txtFind", form.txtFind)) {
    setObjectName("frmFind");
    setAttribute(Qt::WA_DeleteOnClose);
    text_->setMinimumWidth(text_->fontMetrics().averageCharWidth() * 32);
    QAction* sign = text_->addAction(icons::mark(), QLineEdit::TrailingPosition);
    sign->setText(tr("Nothing was found"));
    const auto look = [this, &form, sign] {
        sign->setVisible(form.isNotFound());
        text_->setAccessibleDescription(form.isNotFound() ? sign->text() : QString());
    };
    bind(look);
    connect(text_, &QLineEdit::textChanged, this, look);
    auto* find = bind("cmdFind", form.cmdFind, 'F', [&form] { form.cmdFind_Click(); });
    auto* next = bind("cmdNext", form.cmdNext, 'N', [&form] { form.cmdNext_Click(); });
    // Works in the main window too, while this dialog is open.
    new QShortcut(
        Qt::Key_F3, next, [next] { next->click(); }, Qt::ApplicationShortcut);
    auto* exit = bind("cmdCancel", form.cmdCancel, 'x', [&form] { form.cmdCancel_Click(); });
    auto* contents = new QVBoxLayout;
    contents->addWidget(bind(form.lblName, 'T', text_));
    contents->addWidget(text_);
    contents->addStretch();
    arrange(contents, {find, next, exit});
    if (QWidget* main = ownerOfDialogs()) main->installEventFilter(this);
    showForm();
}

/// Form_Activate: whenever the dialog becomes active, the text gets the focus and is selected.
void FindDialog::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) focusAndSelect(text_);
    FormDialog::changeEvent(event);
}

/// Stays above the main window when that becomes active. The toolkit does this only for dialogs
/// with an owner.
bool FindDialog::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::WindowActivate) raise();
    return FormDialog::eventFilter(object, event);
}
