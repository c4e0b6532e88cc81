// New, open, save, save as, close and exit: the life of the open configuration.
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

/// What the lifecycle asks of the window that shows the configuration.
class LifecycleWindow {
 public:
    virtual ~LifecycleWindow() = default;

    /// Hides and empties both views and resets the buffer of copied items.
    virtual void InitObjects() = 0;
    /// A file begins to be read: all commands wait.
    virtual void loadingStarted() = 0;
    virtual void itemLoaded() = 0;
    /// The file has been read for a second: the user may want to end that.
    virtual void loadingTakesLong() = 0;
    virtual void loadingEnded() = 0;
    /// There is a configuration to show and to edit.
    virtual void configurationOpened() = 0;
    /// There is none any more.
    virtual void configurationClosed() = 0;
    virtual void clearList() = 0;
    /// Shows the devices in the list.
    virtual void listDevices() = 0;
    /// Selects a node of the tree and shows it, unless a dialog is open that works on another.
    virtual void showFault(const Node& node) = 0;
    /// Closes the editor's windows and ends the application.
    virtual void endApplication() = 0;
};

/// The commands that create, open, save and close the configuration. Each asks what it has to
/// ask, and none throws away changes without an answer of the user. None writes what the rules of
/// files refuse, nor, unless the user says so, what could not be read back: the node that is in the
/// way is shown then, and the old file stays.
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
    /// Asks for the file, unless it is given.
    void mnuOpenCfg_Click(const std::string& given = {});
    /// Ends the reading of a file, if there is one under way, as if it had failed.
    void cancelLoading() { loading_.goesOn = false; }
    void mnuSaveCfg_Click();
    void mnuSaveAs_Click();
    void mnuCloseCfg_Click();
    void mnuExit_Click();
    /// The main window is being closed. False when it must stay. While a file is read, that comes
    /// to an end first; then the application ends.
    bool Form_Unload();
    /// The program is told to end, by the desktop whose session ends. False when it must not: the
    /// user wanted to save, and it is still not saved. Where `mayAsk` says that no question may be
    /// asked, there is none. What is open stays so.
    bool mayEnd(const std::function<bool()>& mayAsk);

    static constexpr const char* saveActiveQuestion = "Do you want to save active configuration?";

    /// Offers to save what is not saved. False when the command that would replace it must stop:
    /// the user wanted to save, and it is still not saved.
    bool saveFirst(const char* question = saveActiveQuestion);

    /// Asks for an existing configuration file; its path, or "" when the user chose none.
    std::string ShowDialSave();

 private:
    enum class SaveOutcome { saved, declined, failed };

    /// The reading of a file: events may come to the editor meanwhile.
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
    bool leave(const char* routine);
    bool unsaved() const { return document_.open && !document_.saved; }

    Document& document_;
    const FileRules& rules_;
    Desktop& desktop_;
    Disk& disk_;
    FLRegistry& registry_;
    LifecycleWindow& window_;
    /// The file that was read or written last, as it was then.
    std::string lastPath_;
    std::optional<FileStamp> lastStamp_;
    Loading loading_;
};
