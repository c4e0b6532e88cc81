// The desktop as the toolkit offers it.
#pragma once

#include <QString>

#include "desktop/Desktop.h"

class QFileDialog;

/// File choosers are the platform's own where it has them.
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
    /// On Windows the program's folder; elsewhere the user's documents, or the home folder where
    /// there are none.
    std::string defaultFolder() override;
    std::string clipboardText() override;
    void setClipboardText(const std::string& text) override;
    void clearClipboard() override;
    void setPointer(Pointer pointer) override;
    void processPendingEvents() override;

 private:
    /// What the user chose from the chooser's start in that folder. Raises ErrorNumber::cancelled.
    std::string choose(QFileDialog& chooser, const FileFilter& filter, const QString& folder);

    QString lastFolder_;
};
