// What all dialogs have in common: the binding of widgets to the controls of a form.
#pragma once

#include <QApplication>
#include <QDialog>
#include <functional>
#include <vector>

#include "dialogs/Controls.h"
#include "model/FileFitness.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// A modal dialog over a form. Each widget is bound to a control of the form and bears its name;
/// before a handler of the form runs, the form learns what the widgets hold, and afterwards they
/// show what the form says. The dialog ends when the form says that it is closed.
class FormDialog : public QDialog {
    Q_OBJECT

 public:
    /// `closed` asks the form; `exit` is its handler for leaving by Escape or the title bar.
    /// The dialog stands over `owner`, if it has one.
    FormDialog(const char* caption, std::function<bool()> closed, std::function<void()> exit,
               QWidget* owner = QApplication::activeWindow());

    void reject() override;

 protected:
    using KeyFilter = std::function<int(int)>;

    /// A label whose accelerator is the letter, for the field that it stands beside.
    QLabel* bind(const Label& label, char accelerator, QWidget* field);
    /// Typed characters pass through the filter, where there is one.
    QLineEdit* bind(const char* name, TextBox& box, KeyFilter filter = nullptr);
    /// The user may type another text than those proposed only when `freeText`.
    QComboBox* bind(const char* name, ComboBox& box, bool freeText);
    /// Shows a sign in the field, with what is wrong as its tooltip, while its text would spoil the
    /// saved file in that place.
    void mark(QLineEdit* edit, FilePlace place);
    QPushButton* bind(const char* name, const Button& button, std::function<void()> handler);
    /// A further thing to learn from a widget, or to show in one.
    void bind(std::function<void()> learn, std::function<void()> show);

    /// Runs a handler of the form.
    void run(const std::function<void()>& handler);
    /// Shows what the form says; called once all is bound.
    void showForm();

 private:
    std::function<bool()> closed_;
    std::function<void()> exit_;
    std::vector<std::function<void()>> learn_;
    std::vector<std::function<void()>> show_;
};
