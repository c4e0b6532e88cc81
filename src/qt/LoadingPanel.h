// The status panel in the main window.
#pragma once

#include <QFrame>
#include <QTimer>

#include "editor/frmEditing.h"

class QProgressBar;
class QPushButton;

/// Shows the progress while a file loads. When loading takes long, it has a Cancel button, and
/// Escape cancels too; all other input is dropped.
class LoadingPanel : public QFrame {
    Q_OBJECT

 public:
    LoadingPanel(frmEditing& form, QWidget* parent);

    /// Moves itself to the middle of an area, and sets its size to fit its text.
    void centerIn(QSize area);
    /// Shows or hides itself, depending on the form.
    void follow();

 protected:
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    void takeInput();

    frmEditing& form_;
    const frmEditing::StatusPanel& panel_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QTimer refresh_;
};
