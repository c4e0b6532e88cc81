// The interface of the editor's rules to the desktop.
#pragma once

#include <string>

/// The files that a chooser shows.
struct FileFilter {
    std::string description;  ///< e.g. "configuration files "
    std::string pattern;      ///< e.g. "*.xml"
};

/// The mouse pointer; `icon` is the one while a node is dragged.
enum class Pointer { normal, busy, icon };

/// The icon in a message box.
enum class MessageIcon { none, exclamation, stop };

enum class Answer { yes, no, cancel };

/// Message boxes, file choosers, the system clipboard, the mouse pointer and pending events. Texts
/// and paths are UTF-8. A call that opens a box or a chooser returns when the user has closed it.
class Desktop {
 public:
    virtual ~Desktop() = default;

    /// Shows a message with an OK button. The title is that of the application.
    void showMessage(const std::string& text) { showMessage(text, MessageIcon::none); }
    virtual void showMessage(const std::string& text, MessageIcon icon) = 0;
    /// Asks a question with Yes and No buttons; true for Yes. `proposed` is the button that Enter
    /// presses.
    bool askYesNo(const std::string& text) { return askYesNo(text, Answer::yes); }
    virtual bool askYesNo(const std::string& text, Answer proposed) = 0;
    virtual Answer askYesNoCancel(const std::string& text) = 0;

    /// Returns the full path of an existing file that the user chooses. The chooser starts in the
    /// folder of its last use. Raises ErrorNumber::cancelled when the user chose no file.
    virtual std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) = 0;
    /// Returns the full path of a file that the user chooses. The file may exist; the chooser does
    /// not ask whether to replace it. It starts with the full path `proposed`. Raises
    /// ErrorNumber::cancelled when the user chose no file.
    virtual std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                         const std::string& proposed) = 0;
    /// Returns the proposed folder for a new configuration; it ends with the system's path
    /// separator.
    virtual std::string defaultFolder() = 0;

    /// Returns the text on the system clipboard; empty when there is none.
    virtual std::string clipboardText() = 0;
    virtual void setClipboardText(const std::string& text) = 0;
    virtual void clearClipboard() = 0;

    virtual void setPointer(Pointer pointer) = 0;
    /// Lets the windows repaint during long work. Keys and clicks wait until the work is done.
    virtual void processPendingEvents() = 0;
};

/// Shows the busy pointer during its lifetime.
class BusyPointer {
 public:
    explicit BusyPointer(Desktop& desktop) : desktop_(desktop) {
        desktop_.setPointer(Pointer::busy);
    }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;
    ~BusyPointer() { desktop_.setPointer(Pointer::normal); }

 private:
    Desktop& desktop_;
};
