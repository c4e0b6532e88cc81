#include "qt/FormDialog.h"

#include <QAction>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "qt/Icons.h"
#include "qt/Text.h"

namespace {

/// Drops typed characters that a form's key filter does not let pass. Commands of the keyboard
/// (Ctrl+V and the like) are no characters.
class TypingFilter : public QObject {
 public:
    TypingFilter(std::function<int(int)> filter, QLineEdit* edit)
        : QObject(edit), filter_(std::move(filter)) {
        edit->installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            return isDropped(static_cast<QKeyEvent*>(event)->text());
        }
        if (event->type() == QEvent::InputMethod) {
            return isDropped(static_cast<QInputMethodEvent*>(event)->commitString());
        }
        return false;
    }

 private:
    bool isDropped(const QString& typed) const {
        for (const QChar c : typed)
            if (c.isPrint() && filter_(c.unicode()) == 0) return true;
        return false;
    }

    std::function<int(int)> filter_;
};

QString withAccelerator(const std::string& caption, char accelerator) {
    QString text = toQt(caption);
    const auto place = text.indexOf(QLatin1Char(accelerator));
    if (place >= 0) text.insert(place, '&');
    return text;
}

}  // namespace

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
    // Of a combo box with free text, it is the part within it that has the keyboard.
    if (auto* edit = field->findChild<QLineEdit*>()) edit->setAccessibleName(toQt(label.caption));
    bind(nullptr, [widget, &label] { widget->setEnabled(label.enabled); });
    return widget;
}

QLineEdit* FormDialog::bind(const char* name, TextBox& box, KeyFilter filter) {
    auto* edit = new QLineEdit(this);
    edit->setObjectName(name);
    if (filter) new TypingFilter(std::move(filter), edit);
    bind([edit, &box] { box.text = fromQt(edit->text()); },
         [edit, &box] {
             // A text that has not changed keeps its cursor and selection.
             if (edit->text() != toQt(box.text)) edit->setText(toQt(box.text));
             edit->setEnabled(box.enabled);
         });
    return edit;
}

QComboBox* FormDialog::bind(const char* name, ComboBox& box, bool freeText) {
    auto* combo = new QComboBox(this);
    combo->setObjectName(name);
    combo->setEditable(freeText);
    combo->setInsertPolicy(QComboBox::NoInsert);
    for (const std::string& text : box.list)
        combo->addItem(toQt(text));
    // A text from a file may be none of the list; it is kept and can be chosen again.
    if (!freeText && combo->findText(toQt(box.text)) < 0) combo->insertItem(0, toQt(box.text));
    bind([combo, &box] { box.text = fromQt(combo->currentText()); },
         [combo, &box] { combo->setCurrentText(toQt(box.text)); });
    return combo;
}

void FormDialog::mark(QLineEdit* edit, FilePlace place) {
    QAction* sign = edit->addAction(icons::mark(), QLineEdit::TrailingPosition);
    sign->setText(tr("Fault"));
    const auto look = [edit, sign, place] {
        const QString fault = toQt(spoilsFile(fromQt(edit->text()), place));
        sign->setVisible(!fault.isEmpty());
        sign->setToolTip(fault);
        edit->setAccessibleDescription(fault);
    };
    connect(edit, &QLineEdit::textChanged, this, look);
    look();
}

QPushButton* FormDialog::bind(const char* name, const Button& button,
                              std::function<void()> handler) {
    auto* widget = new QPushButton(this);
    widget->setObjectName(name);
    widget->setAutoDefault(false);
    connect(widget, &QPushButton::clicked, this,
            [this, handler = std::move(handler)] { run(handler); });
    bind(nullptr, [widget, &button] {
        widget->setText(toQt(button.caption));
        widget->setEnabled(button.enabled);
    });
    return widget;
}

void FormDialog::bind(std::function<void()> learn, std::function<void()> show) {
    if (learn) learn_.push_back(std::move(learn));
    if (show) show_.push_back(std::move(show));
}

void FormDialog::run(const std::function<void()>& handler) {
    for (const auto& learn : learn_)
        learn();
    handler();
    showForm();
    if (closed_()) accept();
}

void FormDialog::showForm() {
    for (const auto& show : show_)
        show();
}

void FormDialog::reject() { run(exit_); }
