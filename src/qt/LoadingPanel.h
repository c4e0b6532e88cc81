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

    /// Takes the middle of an area, with room for its text.
    void centerIn(QSize area);
    /// Shows or hides itself as the form says.
    void follow();

 private:
    const frmEditing::StatusPanel& panel_;
    QLabel* label_;
    QProgressBar* bar_;
    QTimer refresh_;
};
