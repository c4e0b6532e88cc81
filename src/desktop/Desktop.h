// What the rules of the editor ask of a desktop. Interfaces only.
#pragma once

#include <string>

/// The files that a chooser offers.
struct FileFilter {
    std::string description;  ///< e.g. "configuration files "
    std::string pattern;      ///< e.g. "*.xml"
};

/// `icon` is the shape while a node is dragged.
enum class Pointer { normal, busy, icon };

/// The sign beside a message.
enum class MessageIcon { none, exclamation, stop };

enum class Answer { yes, no, cancel };

/// Message boxes, file choosers, the system clipboard, the mouse pointer and pending events. Texts
/// and paths are UTF-8. A box or a chooser returns when the user has closed it.
class Desktop {
 public:
    virtual ~Desktop() = default;

    /// A message with an OK button; the box has the application's title.
    void showMessage(const std::string& text) { showMessage(text, MessageIcon::none); }
    virtual void showMessage(const std::string& text, MessageIcon icon) = 0;
    /// A question with Yes and No buttons; true for Yes. `proposed` is the one that Enter presses.
    bool askYesNo(const std::string& text) { return askYesNo(text, Answer::yes); }
    virtual bool askYesNo(const std::string& text, Answer proposed) = 0;
    virtual Answer askYesNoCancel(const std::string& text) = 0;

    /// The full path of an existing file. The chooser starts in the folder that one was used in
    /// last. Raises ErrorNumber::cancelled when the user chose none.
    virtual std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) = 0;
    /// The full path of a file that may or may not exist; the chooser asks no question of its
    /// own before an existing one. It starts with the full path of the file that is proposed.
    /// Raises ErrorNumber::cancelled when the user chose none.
    virtual std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                         const std::string& proposed) = 0;
    /// The folder where a new configuration is proposed to be kept, with the system's separator of
    /// folders at its end.
    virtual std::string defaultFolder() = 0;

    /// The text on the system clipboard; empty when it holds none.
    virtual std::string clipboardText() = 0;
    virtual void setClipboardText(const std::string& text) = 0;
    virtual void clearClipboard() = 0;

    virtual void setPointer(Pointer pointer) = 0;
    /// Gives the windows a turn to repaint in long work. What the user typed or clicked
    /// meanwhile waits until the work is done.
    virtual void processPendingEvents() = 0;
};

/// Shows the busy pointer as long as it lives.
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
