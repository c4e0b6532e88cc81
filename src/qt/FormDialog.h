// The base of all dialogs: binds widgets to the controls of a form.
#pragma once

#include <QDialog>
#include <functional>
#include <initializer_list>
#include <vector>

#include "dialogs/Controls.h"
#include "file/FileRules.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;

/// Returns the owner for a new message box or dialog: the open modal dialog, otherwise the main
/// window. The find dialog owns none, as it may be closed at any time.
QWidget* ownerOfDialogs();

/// Returns a caption in which that letter is the accelerator.
QString withAccelerator(std::string_view caption, char accelerator);

/// A modal dialog for a form. Each widget is bound to a control of the form and has its name.
///
/// Each change by the user is written to the form at once. Nothing else is: if a widget cannot show
/// a text exactly, the form keeps that text until the user changes it. After each handler of the
/// form the widgets show the form's values. The dialog closes when `closed` returns true. The Tab
/// key visits the widgets in the order in which they were bound.
class FormDialog : public QDialog {
    Q_OBJECT

 public:
    /// `closed` returns whether the form is closed; `exit` is called for Escape and the title bar.
    FormDialog(const char* caption, std::function<bool()> closed, std::function<void()> exit,
               QWidget* owner = ownerOfDialogs());

    void reject() override;

 protected:
    using KeyFilter = std::function<int(int)>;
    using Handler = std::function<void()>;

    /// Makes the label of a field. The letter is its accelerator.
    QLabel* bind(const Label& label, char accelerator, QWidget* field);
    /// Makes a text field. A filter is called with each typed character; 0 drops the character.
    QLineEdit* bind(const char* name, TextBox& box, KeyFilter filter = nullptr);
    /// Makes a combo box. With `freeText` the user may type texts that are not in the list.
    /// `changed` is called when the user has changed the text.
    QComboBox* bind(const char* name, ComboBox& box, bool freeText, Handler changed = nullptr);
    /// Shows a sign in the field, with the fault as its tooltip, while the text of the field has a
    /// fault at that place of the file.
    void mark(QLineEdit* edit, FilePlace place);
    /// Makes a button. The accelerator is a letter of the caption.
    QPushButton* bind(const char* name, const Button& button, char accelerator, Handler handler);
    /// Adds a function that is called whenever the widgets show the form's values.
    void bind(Handler show) { show_.push_back(std::move(show)); }
    /// Called when the value of a widget has changed. Calls `take`, which writes the value to the
    /// form, if the user made the change.
    void acceptInput(const Handler& take);

    /// Lays out the contents and the row of buttons below. The first button is the default.
    void arrange(QLayout* contents, std::initializer_list<QPushButton*> buttons);

    /// Moves the focus to a field and selects its text.
    static void focusAndSelect(QLineEdit* edit);

    /// Runs a handler of the form.
    void run(const Handler& handler);
    /// Shows the form's values. The constructor of a dialog calls it after binding all widgets.
    void showForm();

 private:
    std::function<bool()> closed_;
    Handler exit_;
    std::vector<Handler> show_;
    std::vector<Handler> focusMoves_;  // each moves the focus to its field if the form asks for it
    bool showing_ = false;
};
