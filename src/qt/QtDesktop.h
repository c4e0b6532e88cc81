// The desktop as the toolkit offers it.
#pragma once

#include "desktop/Desktop.h"

/// Boxes and choosers stand over the window that is active when they are shown. File choosers
/// are the platform's own where it has them.
class QtDesktop : public Desktop {
 public:
    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon icon) override;
    bool askYesNo(const std::string& text) override;
    Answer askYesNoCancel(const std::string& text) override;
    std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) override;
    std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                 const std::string& proposedName) override;
    /// On Windows the program's folder; elsewhere the user's documents, or the home folder where
    /// there are none.
    std::string defaultFolder() override;
    std::string clipboardText() override;
    void clearClipboard() override;
    void setPointer(Pointer pointer) override;
    void processPendingEvents() override;
};
