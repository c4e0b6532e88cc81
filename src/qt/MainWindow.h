// The editor's main window.
#pragma once

#include <QMainWindow>
#include <vector>

#include "editor/frmEditing.h"
#include "qt/ResizableWidgets.h"

class ListPane;
class LoadingPanel;
class QAction;
class QLabel;
class QMenu;
class QToolBar;
class TreePane;

/// Binds the main form to the toolkit: what is clicked goes to the form's handlers, and what the
/// form says of views, panel and commands is shown.
class MainWindow : public QMainWindow, private frmEditing::Window {
    Q_OBJECT

 public:
    MainWindow(frmEditing& form, Document& document);
    ~MainWindow() override;

 Q_SIGNALS:
    /// The program is to end with that status; the window asks no more questions.
    void applicationEnded(int exitStatus);

 protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    /// An action and the row of the command table that governs it.
    struct Bound {
        QAction* action;
        const Command* command;
    };

    void buildMenus();
    void buildToolbar();
    void addHiddenKeys();
    void connectViews();
    void showContextMenu(frmEditing::ActiveControl view, QPoint place);
    void addEntry(QMenu& menu, const Command& command);
    void showViewMode();
    void showActing();
    void layOut();
    void resizeParts();
    void setToolbarPicture(int toolbarHeight);

    void formChanged() override;
    void focusTree() override;
    bool isBehindDialog() const override;
    void endApplication(int exitStatus) override;

    frmEditing& form_;
    QWidget* client_;
    QToolBar* toolbar_;
    TreePane* tree_;
    ListPane* list_;
    LoadingPanel* panel_;
    QLabel* hint_;
    std::vector<Bound> bound_;
    ResizableArea innerArea_;
    FormSize innerReference_;
    bool laidOut_ = false;  // before, the window is loading and its size means nothing
    bool ending_ = false;
};
