// What all dialogs have in common: the binding of widgets to the controls of a form.
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

/// The window that a box or a dialog opened now stands over and belongs to: the dialog that is
/// open, else the main window. The find dialog owns none, as it may be taken away at any time.
QWidget* ownerOfDialogs();

/// A caption whose accelerator is that letter of it.
QString withAccelerator(std::string_view caption, char accelerator);

/// A modal dialog over a form. Each widget is bound to a control of the form and bears its name.
/// What the user changes goes into the form at once, and nothing else does: a text that a widget
/// cannot show as it is stays as it is until the user changes it. After each of its handlers the
/// widgets show what the form says. The dialog ends when the form says that it is closed. The Tab
/// key goes through the widgets in the order in which they were bound.
class FormDialog : public QDialog {
    Q_OBJECT

 public:
    /// `closed` asks the form; `exit` is its handler for leaving by Escape or the title bar.
    FormDialog(const char* caption, std::function<bool()> closed, std::function<void()> exit,
               QWidget* owner = ownerOfDialogs());

    void reject() override;

 protected:
    using KeyFilter = std::function<int(int)>;
    using Handler = std::function<void()>;

    /// A label whose accelerator is the letter, for the field that it stands beside.
    QLabel* bind(const Label& label, char accelerator, QWidget* field);
    /// Typed characters pass through the filter, where there is one.
    QLineEdit* bind(const char* name, TextBox& box, KeyFilter filter = nullptr);
    /// The user may type another text than those proposed only when `freeText`. `changed` runs when
    /// the user has chosen another.
    QComboBox* bind(const char* name, ComboBox& box, bool freeText, Handler changed = nullptr);
    /// Shows a sign in the field, with what is wrong as its tooltip, while its text has a fault in
    /// that place of the file.
    void mark(QLineEdit* edit, FilePlace place);
    /// The accelerator is a letter of the caption.
    QPushButton* bind(const char* name, const Button& button, char accelerator, Handler handler);
    /// A further thing to show.
    void bind(Handler show) { show_.push_back(std::move(show)); }
    /// What a widget holds has changed: `take` gives it to the form if the user did it.
    void learn(const Handler& take);

    /// Lays out what the dialog is about, and the buttons below, of which the first is the default.
    void arrange(QLayout* contents, std::initializer_list<QPushButton*> buttons);

    /// Gives a field the keyboard, its text selected to be typed over.
    static void enter(QLineEdit* edit);

    /// Runs a handler of the form.
    void run(const Handler& handler);
    /// Shows what the form says; called once all is bound.
    void showForm();

 private:
    std::function<bool()> closed_;
    Handler exit_;
    std::vector<Handler> show_;
    std::vector<Handler> takers_;  // of the keyboard, where the form gives it to a field
    bool showing_ = false;
};
