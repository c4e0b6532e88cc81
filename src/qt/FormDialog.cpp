#include "qt/FormDialog.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "qt/Icons.h"
#include "qt/Text.h"

namespace {

/// Drops typed characters that a form's key filter rejects. Each character is checked by itself, as
/// an input method may enter several at once. Control characters (Backspace, Ctrl+V and the like)
/// always pass.
class TypingFilter : public QObject {
 public:
    TypingFilter(std::function<int(int)> filter, QLineEdit* edit)
        : QObject(edit), filter_(std::move(filter)) {
        edit->installEventFilter(this);
    }

    /// Replaces an event with rejected characters by an event with the others.
    bool eventFilter(QObject* edit, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const auto& key = static_cast<QKeyEvent&>(*event);
            const QString rest = passing(key.text());
            if (rest == key.text()) return false;
            QKeyEvent replacement(key.type(), key.key(), key.modifiers(), rest);
            if (!rest.isEmpty()) QApplication::sendEvent(edit, &replacement);
            return true;
        }
        if (event->type() == QEvent::InputMethod) {
            const auto& input = static_cast<QInputMethodEvent&>(*event);
            const QString rest = passing(input.commitString());
            if (rest == input.commitString()) return false;
            QInputMethodEvent replacement(input.preeditString(), input.attributes());
            replacement.setCommitString(rest, input.replacementStart(), input.replacementLength());
            QApplication::sendEvent(edit, &replacement);
            return true;
        }
        return false;
    }

 private:
    QString passing(const QString& typed) const {
        QString rest;
        for (const char32_t code : typed.toUcs4()) {
            const bool control = code < 0x20 || code == 0x7F;
            if (control || filter_(static_cast<int>(code)) != 0)
                rest += QString::fromUcs4(&code, 1);
        }
        return rest;
    }

    std::function<int(int)> filter_;
};

}  // namespace

QString withAccelerator(std::string_view caption, char accelerator) {
    QString text = toQt(caption);
    const auto place = text.indexOf(QLatin1Char(accelerator));
    if (place >= 0) text.insert(place, '&');
    return text;
}

QWidget* ownerOfDialogs() {
    if (QWidget* dialog = QApplication::activeModalWidget()) return dialog;
    const auto windows = QApplication::topLevelWidgets();
    const auto main = std::ranges::find_if(
        windows, [](QWidget* window) { return qobject_cast<QMainWindow*>(window) != nullptr; });
    return main == windows.end() ? nullptr : *main;
}

FormDialog::FormDialog(const char* caption, std::function<bool()> closed,
                       std::function<void()> exit, QWidget* owner)
    : QDialog(owner), closed_(std::move(closed)), exit_(std::move(exit)) {
    setWindowTitle(QString::fromUtf8(caption));
    setSizeGripEnabled(true);
}

QLabel* FormDialog::bind(const Label& label, char accelerator, QWidget* field) {
    auto* widget = new QLabel(withAccelerator(label.caption, accelerator), this);
    widget->setBuddy(field);
    field->setAccessibleName(toQt(label.caption));
    // In a combo box with free text, the line edit within it has the focus.
    if (auto* edit = field->findChild<QLineEdit*>()) edit->setAccessibleName(toQt(label.caption));
    bind([widget, &label] { widget->setEnabled(label.enabled); });
    return widget;
}

QLineEdit* FormDialog::bind(const char* name, TextBox& box, KeyFilter filter) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    if (filter) new TypingFilter(std::move(filter), edit);
    connect(edit, &QLineEdit::textChanged, this,
            [this, &box](const QString& text) { acceptInput([&] { box.text = fromQt(text); }); });
    bind([edit, &box] {
        // An unchanged text keeps its cursor and selection. The field shows no more characters than
        // its maximum length.
        const QString text = toQt(box.text).left(edit->maxLength());
        if (edit->text() != text) {
            edit->setText(text);
            edit->home(false);
        }
        edit->setEnabled(box.enabled);
    });
    focusMoves_.push_back([edit, &box] {
        if (std::exchange(box.getsFocus, false)) focusAndSelect(edit);
    });
    return edit;
}

QComboBox* FormDialog::bind(const char* name, ComboBox& box, bool freeText, Handler changed) {
    auto* combo = new QComboBox(this);
    combo->setObjectName(name);
    combo->setEditable(freeText);
    combo->setInsertPolicy(QComboBox::NoInsert);
    // A long text from a file must not widen the dialog.
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    if (freeText) combo->setCompleter(nullptr);  // a completion would replace the typed text
    for (const std::string& text : box.list)
        combo->addItem(toQt(text));
    // A text from a file may be missing in the list. It is added, so that it can be chosen again.
    if (!freeText && combo->findText(toQt(box.text)) < 0) combo->insertItem(0, toQt(box.text));
    connect(combo, &QComboBox::currentTextChanged, this,
            [this, &box, changed = std::move(changed)](const QString& text) {
                acceptInput([&] {
                    box.text = fromQt(text);
                    if (changed) run(changed);
                });
            });
    bind([combo, &box] {
        const QString text = toQt(box.text);
        if (combo->currentText() == text) return;
        combo->setCurrentIndex(combo->findText(text));  // so that the arrow keys start there
        if (combo->isEditable()) combo->setEditText(text);
    });
    return combo;
}

void FormDialog::mark(QLineEdit* edit, FilePlace place) {
    QAction* sign = edit->addAction(icons::mark(), QLineEdit::TrailingPosition);
    sign->setText(tr("Fault"));
    // The usual description of a part of an address is the name of the part.
    const auto look = [edit, sign, place, usual = edit->accessibleDescription()] {
        const QString fault = toQt(faultOf(fromQt(edit->text()), place).text);
        sign->setVisible(!fault.isEmpty());
        sign->setToolTip(fault);
        edit->setAccessibleDescription(fault.isEmpty() ? usual : fault);
    };
    connect(edit, &QLineEdit::textChanged, this, look);
    look();
}

QPushButton* FormDialog::bind(const char* name, const Button& button, char accelerator,
                              Handler handler) {
    auto* widget = new QPushButton(this);
    widget->setObjectName(name);
    connect(widget, &QPushButton::clicked, this,
            [this, handler = std::move(handler)] { run(handler); });
    bind([widget, &button, accelerator] {
        widget->setText(withAccelerator(button.caption, accelerator));
        widget->setEnabled(button.enabled);
    });
    return widget;
}

void FormDialog::acceptInput(const Handler& take) {
    if (!showing_) take();
}

void FormDialog::focusAndSelect(QLineEdit* edit) {
    edit->setFocus();
    edit->selectAll();
}

void FormDialog::run(const Handler& handler) {
    if (closed_()) return;  // a second click while the dialog closes
    const QPointer<FormDialog> alive(this);
    const bool wasActive = isActiveWindow();
    handler();
    if (!alive) return;  // the handler has ended the program
    showForm();
    if (!closed_()) return;
    const bool messageWasActive = wasActive && !isActiveWindow();
    accept();
    // Some desktops leave no window active when a message and then its dialog close.
    if (messageWasActive && parentWidget() != nullptr) parentWidget()->activateWindow();
}

void FormDialog::showForm() {
    showing_ = true;
    for (const auto& show : show_)
        show();
    showing_ = false;
    for (const auto& moveFocus : focusMoves_)
        moveFocus();
}

void FormDialog::arrange(QLayout* contents, std::initializer_list<QPushButton*> buttons) {
    auto* row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton* button : buttons)
        row->addWidget(button);
    auto* column = new QVBoxLayout(this);
    column->addLayout(contents, 1);
    column->addSpacing(fontMetrics().height() / 2);
    column->addLayout(row);
    (*buttons.begin())->setDefault(true);
}

void FormDialog::reject() { run(exit_); }
