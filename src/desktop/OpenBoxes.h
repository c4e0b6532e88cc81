// Tracks whether a message box, a chooser or a modal dialog is open, or a node is dragged.
#pragma once

#include <string>

#include "desktop/Desktop.h"

/// Counts the open boxes, choosers, modal dialogs and drags. While one is open, no other command
/// may begin: the command that opened it is not finished, and uses data that another one would
/// change. Commands can still be requested then: by a file that was dropped before, by a menu entry
/// that an assistive tool or the menu of the desktop chooses, by the second of two clicks.
class OpenBoxes {
 public:
    /// Counts one as open during its lifetime.
    class Open {
     public:
        explicit Open(OpenBoxes& boxes) : boxes_(boxes) { ++boxes_.count_; }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open() { --boxes_.count_; }

     private:
        OpenBoxes& boxes_;
    };

    bool any() const { return count_ > 0; }

 private:
    int count_ = 0;
};

/// Forwards to another desktop, and counts its open boxes and choosers.
class WatchedDesktop : public Desktop {
 public:
    WatchedDesktop(Desktop& desktop, OpenBoxes& boxes) : desktop_(desktop), boxes_(boxes) {}

    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon icon) override {
        const OpenBoxes::Open open(boxes_);
        desktop_.showMessage(text, icon);
    }
    using Desktop::askYesNo;
    bool askYesNo(const std::string& text, Answer proposed) override {
        const OpenBoxes::Open open(boxes_);
        return desktop_.askYesNo(text, proposed);
    }
    Answer askYesNoCancel(const std::string& text) override {
        const OpenBoxes::Open open(boxes_);
        return desktop_.askYesNoCancel(text);
    }
    std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) override {
        const OpenBoxes::Open open(boxes_);
        return desktop_.chooseFileToOpen(title, filter);
    }
    std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                 const std::string& proposed) override {
        const OpenBoxes::Open open(boxes_);
        return desktop_.chooseFileToSave(title, filter, proposed);
    }
    std::string defaultFolder() override { return desktop_.defaultFolder(); }
    std::string clipboardText() override { return desktop_.clipboardText(); }
    void setClipboardText(const std::string& text) override { desktop_.setClipboardText(text); }
    void clearClipboard() override { desktop_.clearClipboard(); }
    void setPointer(Pointer pointer) override { desktop_.setPointer(pointer); }
    void processPendingEvents() override { desktop_.processPendingEvents(); }

 private:
    Desktop& desktop_;
    OpenBoxes& boxes_;
};
