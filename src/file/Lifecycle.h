// The commands New, Open, Save, Save as, Close and Exit.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"
#include "file/FileRules.h"
#include "model/Document.h"

/// What these commands need of the window that shows the configuration.
class LifecycleWindow {
 public:
    virtual ~LifecycleWindow() = default;

    /// Hides and empties both views and clears the copied items.
    virtual void InitObjects() = 0;
    /// The reading of a file has begun. All commands are disabled.
    virtual void loadingStarted() = 0;
    virtual void itemLoaded() = 0;
    /// The reading has taken a second. The user can cancel it from now on.
    virtual void loadingTakesLong() = 0;
    virtual void loadingEnded() = 0;
    /// There is a configuration to show and to edit.
    virtual void configurationOpened() = 0;
    /// There is no configuration any more.
    virtual void configurationClosed() = 0;
    virtual void clearList() = 0;
    /// Shows the devices in the list.
    virtual void listDevices() = 0;
    /// Selects and shows a node of the tree, unless an open dialog works on another node.
    virtual void showFault(const Node& node) = 0;
    /// Closes the editor's windows and ends the application.
    virtual void endApplication() = 0;
};

/// The commands that create, open, save and close the configuration.
///
///     Lifecycle lifecycle(document, rules, desktop, disk, registry, window);
///     lifecycle.mnuOpenCfg_Click("/home/ann/house.xml");
///     lifecycle.mnuSaveCfg_Click();
///
/// Unsaved changes are never discarded without asking the user. A configuration that FileRules
/// refuses is not saved; one that could not be read back is saved only if the user confirms it.
/// If it is not saved, the window shows the node that causes this, and the old file is unchanged.
class Lifecycle {
 public:
    Lifecycle(Document& document, const FileRules& rules, Desktop& desktop, Disk& disk,
              FLRegistry& registry, LifecycleWindow& window)
        : document_(document),
          rules_(rules),
          desktop_(desktop),
          disk_(disk),
          registry_(registry),
          window_(window) {}

    void mnuNewCfg_Click();
    /// Opens the file `given`. If that is empty, asks the user for a file.
    void mnuOpenCfg_Click(const std::string& given = {});
    /// Ends the reading of a file, if one is being read, as if it had failed.
    void cancelLoading() { loading_.goesOn = false; }
    void mnuSaveCfg_Click();
    void mnuSaveAs_Click();
    void mnuCloseCfg_Click();
    void mnuExit_Click();
    /// Called when the main window is about to close. Returns false if it must stay open. If a file
    /// is being read, it stays open until the reading has been cancelled; then the application
    /// ends.
    bool Form_Unload();
    /// Called when the desktop session ends. Offers to save unsaved changes if `mayAsk` returns
    /// true. Returns false if the program must not end: the user wanted to save, and the
    /// configuration is still not saved. The configuration stays open.
    bool mayEnd(const std::function<bool()>& mayAsk);

    static constexpr const char* saveActiveQuestion = "Do you want to save active configuration?";

    /// Offers to save unsaved changes. Returns false if the calling command must stop: the user
    /// wanted to save, and the configuration is still not saved.
    bool saveFirst(const char* question = saveActiveQuestion);

    /// Asks for an existing configuration file. Returns its path, or "" if the user chose none.
    std::string ShowDialSave();

 private:
    enum class SaveOutcome { saved, declined, failed };

    /// The reading of a file, during which the editor processes events.
    struct Loading {
        bool underWay = false;
        bool goesOn = true;
        bool endsApplication = false;
    };

    SaveOutcome save();
    SaveOutcome saveAs();
    bool canBeReadBack();
    SaveOutcome write(const std::string& path);
    class LoadingUnderWay;

    void load(const std::string& path);
    bool goesOn(std::chrono::steady_clock::time_point began);
    void noteFile(const std::string& path);
    bool mayReplace(const std::string& path, std::optional<FileStamp>& known);
    bool exitApplication(const char* routine);
    bool unsaved() const { return document_.open && !document_.saved; }

    Document& document_;
    const FileRules& rules_;
    Desktop& desktop_;
    Disk& disk_;
    FLRegistry& registry_;
    LifecycleWindow& window_;
    /// Path and stamp of the file that was last read or written.
    std::string lastPath_;
    std::optional<FileStamp> lastStamp_;
    Loading loading_;
};
