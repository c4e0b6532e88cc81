// The main window of the editor, without a toolkit.
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

    bool operator==(const Rectangle&) const = default;
};

/// The places of the main window's parts in its inner area, in pixels.
struct EditingLayout {
    Rectangle toolbar;
    Rectangle tree;
    Rectangle list;
};

/// The main window: the configuration tree on the left, the list with the contents of the selected
/// node on the right, menus and toolbar above them. The members contain what the window shows. The
/// handlers do what clicks and commands do, and show their errors to the user.
///
///     frmEditing form(document, desktop, forms, disk, registry);
///     form.setWindow(&window);
///     form.run(commandNamed("mnuNewCfg"));
class frmEditing final : public LifecycleWindow {
 public:
    /// The toolkit's window that shows this form.
    class Window {
     public:
        virtual ~Window() = default;

        /// Called when views, panel or commands of the form may have changed.
        virtual void formChanged() = 0;
        /// Moves the focus of this window to the tree.
        virtual void focusTree() = 0;
        /// Returns whether a modal dialog is open over this window.
        virtual bool isBehindDialog() const = 0;
        /// Closes all windows of the editor and ends the program with that exit status.
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
        int progress = 0;           ///< counts from 0 to 99, then starts again at 0
        bool offersCancel = false;  ///< once the file has been read for a second
    };

    frmEditing(Document& document, Desktop& desktop, Forms& forms, Disk& disk,
               FLRegistry& registry);

    void setWindow(Window* window) { window_ = window; }

    // What the window shows:
    std::string caption;
    ViewState TreeView1;  ///< shows the tree of the document
    ViewState ListView1State;
    ListView ListView1;
    StatusPanel pnlImpStat;
    ActiveControl activeControl = ActiveControl::none;  ///< set by the window
    /// The window's size when it opened: 80 % of the screen.
    FormSize referenceSize;

    // The events of the window:
    void Form_Initialize();
    void Form_Load(FormSize screen);
    /// Called before the window closes. Returns false when it must stay open.
    bool Form_Unload();
    /// Called before the program ends. Asks whether to save unsaved changes if `mayAsk` returns
    /// true. Returns false when the program must go on.
    bool mayEnd(const std::function<bool()>& mayAsk) { return lifecycle_.mayEnd(mayAsk); }

    /// False while a message box, a chooser or a modal dialog is open, or a node is dragged. Then
    /// the events and commands below do nothing, and Form_Unload() returns false; mayEnd() works as
    /// always.
    bool isFree() const { return !boxes_.any(); }

    /// Resizes the window's parts in proportion to its inner area. `reference` is the size of the
    /// inner area of a window that has `referenceSize`.
    void Form_Resize(ResizableForm& innerArea, FormSize reference) {
        resizing_.resize(innerArea, reference);
    }
    /// The first layout of the parts: fixed fractions of the inner area.
    static EditingLayout layoutFor(FormSize client);

    // The events of the views. Before it reports a click, a view writes its selection to the tree
    // or the list.
    void TreeView1_NodeClick(Node& node);
    void TreeView1_DblClick();
    void ListView1_Click();
    void ListView1_DblClick();
    void ListView1_ColumnClick(std::size_t column);
    /// Returns whether the selection of a view has properties, which a double click opens.
    bool hasProperties(ActiveControl view) const;
    /// The status panel's Cancel button: stops the reading of the file.
    void pnlImpStat_Cancel() { lifecycle_.cancelLoading(); }
    /// The drag within the tree.
    TreeDrag& treeDrag() { return drag_; }
    /// The rules that the fault signs in the views show.
    const FileRules& fileRules() const { return fileRules_; }

    /// Returns whether a file that is dropped on the window can be opened or imported now.
    bool acceptsFile(std::string_view path) const;
    /// Opens or imports a file, depending on the ending of its name.
    void dropFile(const std::string& path);

    // The commands:
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
    /// The captions of Undo and Redo, e.g. "&Undo Delete of 12 items"; none when there is no step
    /// to undo or redo.
    std::optional<std::string> undoCaption() const;
    std::optional<std::string> redoCaption() const;
    /// Opens the dialog of the selection in the active view, as a double click does.
    void mnuProperties_Click();
    std::optional<std::string> propertiesCaption() const;
    /// Opens one dialog for all selected items; needs at least two.
    void mnuItemProperties_Click();
    std::optional<std::string> itemPropertiesCaption() const;
    /// Copies the selected rows as a table to the system clipboard.
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

    /// Runs a command of the table if it can be chosen now.
    void run(const Command& command);
    /// Runs the command of the toolbar button with that key. Does nothing if the key is unknown.
    void Toolbar1_ButtonClick(std::string_view key);
    /// Enables and disables every menu entry and toolbar button.
    void EnMenuButt(const CommandState& state);
    /// Returns whether a menu, or an entry and its toolbar button, is enabled.
    bool isEnabled(const Command& command) const;

    // The calls of the lifecycle:
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
    TreeDrag drag_{document_, desktop_, boxes_};
    PastedTexts pastedTexts_{document_, desktop_, forms_, contents_, ListView1};
    frmFind find_{document_, desktop_, [this] { return focusTree(); }};
    mResize resizing_;
    Window* window_ = nullptr;
    std::vector<bool> enabled_;  // one for each row of the command table
};
