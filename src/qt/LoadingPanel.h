// The status panel over the main window.
#pragma once

#include <QFrame>
#include <QTimer>

#include "editor/frmEditing.h"

class QLabel;
class QProgressBar;
class QPushButton;

/// Shown while a file loads: says so, and that it goes on. Where it takes long it has a Cancel
/// button, and takes Escape for it; what else is typed or clicked then is lost.
class LoadingPanel : public QFrame {
    Q_OBJECT

 public:
    LoadingPanel(frmEditing& form, QWidget* parent);

    /// Takes the middle of an area, with room for its text.
    void centerIn(QSize area);
    /// Shows or hides itself as the form says.
    void follow();

 protected:
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    void takeInput();

    frmEditing& form_;
    const frmEditing::StatusPanel& panel_;
    QLabel* label_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QTimer refresh_;
};
