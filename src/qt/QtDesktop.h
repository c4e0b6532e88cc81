// The desktop, implemented with the toolkit.
#pragma once

#include <QString>

#include "desktop/Desktop.h"

class QFileDialog;

/// Shows message boxes and file choosers, which are those of the platform if it has any; accesses
/// the clipboard and the pointer.
class QtDesktop : public Desktop {
 public:
    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon icon) override;
    using Desktop::askYesNo;
    bool askYesNo(const std::string& text, Answer proposed) override;
    Answer askYesNoCancel(const std::string& text) override;
    std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) override;
    std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                 const std::string& proposed) override;
    /// On Windows the folder of the program; elsewhere the folder of the user's documents, or the
    /// home folder if there is none.
    std::string defaultFolder() override;
    std::string clipboardText() override;
    void setClipboardText(const std::string& text) override;
    void clearClipboard() override;
    void setPointer(Pointer pointer) override;
    void processPendingEvents() override;

 private:
    /// Shows a chooser that starts in a folder, and returns the chosen path. Raises
    /// ErrorNumber::cancelled.
    std::string choose(QFileDialog& chooser, const FileFilter& filter, const QString& folder);

    QString lastFolder_;
};
