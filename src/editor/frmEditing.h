// The main window's rules.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/Desktop.h"
#include "dialogs/Forms.h"
#include "dialogs/WatchedForms.h"
#include "dialogs/frmFind.h"
#include "editor/ActiveControl.h"
#include "editor/Commands.h"
#include "editor/ContentsList.h"
#include "editor/CopyPaste.h"
#include "editor/Deletion.h"
#include "editor/PastedTexts.h"
#include "editor/Properties.h"
#include "editor/TreeDrag.h"
#include "file/FileRules.h"
#include "file/Lifecycle.h"
#include "import/EtsImport.h"
#include "layout/mResize.h"
#include "model/Document.h"
#include "model/ListView.h"

struct Rectangle {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// Where the main window's parts stand in its inner area, in pixels.
struct EditingLayout {
    Rectangle toolbar;
    Rectangle tree;
    Rectangle list;
};

/// The editor's only main window, without a toolkit: the configuration tree on the left, the
/// list of the selected node's contents on the right, menus and toolbar above them. Its members
/// hold what the window shows; its handlers are what clicks and commands do. Handlers report
/// their errors to the user themselves.
class frmEditing final : public LifecycleWindow {
 public:
    /// The window that shows this form.
    class Window {
     public:
        virtual ~Window() = default;

        /// What the form says of views, panel and commands may have changed.
        virtual void formChanged() = 0;
        /// Gives the tree the focus within this window.
        virtual void focusTree() = 0;
        /// True while a dialog is open that keeps the user from this window.
        virtual bool isBehindDialog() const = 0;
        /// Closes all windows of the editor and ends the program, with that exit status.
        virtual void endApplication(int exitStatus) = 0;
    };

    using ActiveControl = ::ActiveControl;

    struct ViewState {
        bool visible = false;
        bool enabled = false;
    };

    /// The status panel that is shown while a file loads.
    struct StatusPanel {
        bool visible = false;
        std::string lblLabel = "Loading File ....";
        int progress = 0;           ///< runs from 0 to 99, again and again
        bool offersCancel = false;  ///< once the file has been read for a second
    };

    frmEditing(Document& document, Desktop& desktop, Forms& forms, Disk& disk,
               FLRegistry& registry);

    void setWindow(Window* window) { window_ = window; }

    // What the window shows.
    std::string caption;
    ViewState TreeView1;  ///< its nodes are the document's tree
    ViewState ListView1State;
    ListView ListView1;
    StatusPanel pnlImpStat;
    ActiveControl activeControl = ActiveControl::none;  ///< told by the window
    /// The window's size when it opened: 80 % of the screen.
    FormSize referenceSize;

    // The window's own events.
    void Form_Initialize();
    void Form_Load(FormSize screen);
    /// False when the window is to stay open.
    bool Form_Unload();
    bool mayEnd(const std::function<bool()>& mayAsk) { return lifecycle_.mayEnd(mayAsk); }

    /// False while a box, a chooser or a modal dialog is open: then none of the events and commands
    /// below does anything. The end of the session may come all the same.
    bool isFree() const { return !boxes_.any(); }

    /// Makes the window's parts follow the size of its inner area; `reference` is the size that
    /// it had, or would have had, as the window opened.
    void Form_Resize(ResizableForm& innerArea, FormSize reference) {
        resizing_.resize(innerArea, reference);
    }
    /// The fixed fractions of the window's inner area.
    static EditingLayout layoutFor(FormSize client);

    // The views' events. A click is reported after the view has made its selection known to the
    // tree or the list.
    void TreeView1_NodeClick(Node& node);
    void TreeView1_DblClick();
    void ListView1_Click();
    void ListView1_DblClick();
    void ListView1_ColumnClick(std::size_t column);
    /// Whether what is selected in a view has properties, which its double click opens.
    bool hasProperties(ActiveControl view) const;
    /// The status panel's Cancel: ends the reading of the file.
    void pnlImpStat_Cancel() { lifecycle_.cancelLoading(); }
    /// A drag within the tree.
    TreeDrag& treeDrag() { return drag_; }
    /// What the signs in the views tell.
    const FileRules& fileRules() const { return fileRules_; }

    /// Whether there is something to do with a file that was dropped on the window: it can be
    /// opened, or imported.
    bool acceptsFile(std::string_view path) const;
    /// Opens or imports it, by the ending of its name, as if it had been chosen.
    void dropFile(const std::string& path);

    // The commands.
    void mnuNewCfg_Click() { lifecycle_.mnuNewCfg_Click(); }
    void mnuOpenCfg_Click() { lifecycle_.mnuOpenCfg_Click(); }
    void mnuSaveCfg_Click() { lifecycle_.mnuSaveCfg_Click(); }
    void mnuSaveAs_Click() { lifecycle_.mnuSaveAs_Click(); }
    void mnuCloseCfg_Click() { lifecycle_.mnuCloseCfg_Click(); }
    void mnuExit_Click() { lifecycle_.mnuExit_Click(); }
    void mnuImpCfg_Click() { import_.mnuImpCfg_Click(); }
    void mnuSetts_Click();
    void mnuAddPlc_Click() { properties_.mnuAddPlc_Click(); }
    void mnuAddBranch_Click() { properties_.mnuAddBranch_Click(); }
    void mnuAddItem_Click() { properties_.mnuAddItem_Click(); }
    void mnuCopy_Click() { copyPaste_.mnuCopy_Click(); }
    void mnuCut_Click();
    void mnuPaste_Click() { copyPaste_.mnuPaste_Click(); }
    void mnuUndo_Click();
    void mnuRedo_Click();
    /// Their captions, e.g. "&Undo Delete of 12 items"; none when there is nothing to take back or
    /// to make again.
    std::optional<std::string> undoCaption() const;
    std::optional<std::string> redoCaption() const;
    /// The dialog of what is selected in the active view, as its double click.
    void mnuProperties_Click();
    std::optional<std::string> propertiesCaption() const;
    /// One dialog for all selected items; from two on.
    void mnuItemProperties_Click();
    std::optional<std::string> itemPropertiesCaption() const;
    /// The selected rows as a table, to the system's clipboard.
    void mnuCopyTable_Click();
    std::optional<std::string> copyTableCaption() const;
    void mnuDelete_Click() { deletion_.mnuDelete_Click(); }
    void mnuPasteName_Click() { pastedTexts_.Paste_Name_Click(); }
    void mnuPasteComment_Click() { pastedTexts_.Paste_Comment_Click(); }
    void mnuFind_Click();
    void mnuAbout_Click() { forms_.showAbout(); }
    void mnuIcon_Click() { ListView1.setView(ListView::View::icon); }
    void mnuSmallIcon_Click() { ListView1.setView(ListView::View::smallIcon); }
    void mnuList_Click() { ListView1.setView(ListView::View::list); }
    void mnuReport_Click() { ListView1.setView(ListView::View::report); }

    /// Runs a command of the table, unless it is one that cannot be chosen now.
    void run(const Command& command);
    /// Runs the command of the toolbar button with that key; an unknown key does nothing.
    void Toolbar1_ButtonClick(std::string_view key);
    /// Enables and disables every menu entry and toolbar button.
    void EnMenuButt(const CommandState& state);
    /// A menu, an entry, or an entry's toolbar button: these two always agree.
    bool isEnabled(const Command& command) const;

    // What the lifecycle asks for.
    void InitObjects() override;
    void loadingStarted() override;
    void itemLoaded() override;
    void loadingTakesLong() override;
    void loadingEnded() override;
    void configurationOpened() override;
    void configurationClosed() override;
    void clearList() override;
    void listDevices() override;
    void showFault(const Node& node) override;
    void endApplication() override;

 private:
    CommandState stateFor(const Node& node) const;
    void showNode(const Node& node);
    void showAfter(Node* node);
    void showViews(ViewState state);
    bool focusTree();
    void unloadFind();
    void end(int exitStatus);
    void formChanged();

    Document& document_;
    OpenBoxes boxes_;
    WatchedDesktop desktop_;
    WatchedForms forms_;
    FileRules fileRules_;
    Lifecycle lifecycle_;
    EtsImport import_;
    ClickNode click_ = [this](Node& node) { TreeView1_NodeClick(node); };
    ContentsList contents_{document_, ListView1};
    Properties properties_{document_, desktop_, forms_, contents_, click_};
    CopyPaste copyPaste_{document_, desktop_, ListView1, activeControl, click_};
    Deletion deletion_{document_, desktop_, ListView1, activeControl, click_};
    TreeDrag drag_{document_, desktop_};
    PastedTexts pastedTexts_{document_, desktop_, forms_, contents_, ListView1};
    frmFind find_{document_, desktop_, [this] { return focusTree(); }};
    mResize resizing_;
    Window* window_ = nullptr;
    std::vector<bool> enabled_;  // by the command table's rows
};
