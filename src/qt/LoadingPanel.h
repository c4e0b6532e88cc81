// The status panel over the main window.
#pragma once

#include <QFrame>
#include <QTimer>

#include "editor/frmEditing.h"

class QLabel;
class QProgressBar;

/// Shown while a file loads: says so, and that it goes on.
class LoadingPanel : public QFrame {
    Q_OBJECT

 public:
    LoadingPanel(const frmEditing::StatusPanel& panel, QWidget* parent);

    /// Shows or hides itself as the form says, in the middle of its parent.
    void follow();

 private:
    const frmEditing::StatusPanel& panel_;
    QLabel* label_;
    QProgressBar* bar_;
    QTimer refresh_;
};
