// The main window of the editor, in the toolkit.
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

/// Binds the main form to the toolkit. Clicks call the form's handlers; views, panel and commands
/// show the form's state.
class MainWindow : public QMainWindow, private frmEditing::Window {
    Q_OBJECT

 public:
    MainWindow(frmEditing& form, Document& document);
    ~MainWindow() override;

 Q_SIGNALS:
    /// The program must end with that exit status. The window asks no more questions.
    void applicationEnded(int exitStatus);

 protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

 private:
    /// An action and its row of the command table.
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
    void showActiveView();
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
    bool laidOut_ = false;  // until then the size of the window is not final
    bool ending_ = false;
};
