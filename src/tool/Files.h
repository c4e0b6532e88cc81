// Reads and writes files for the commands.
#pragma once

#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"
#include "tool/Report.h"

/// A desktop without a user. It passes messages on, chooses no file, and gives each question the
/// answer that changes nothing.
class NoDesktop : public Desktop {
 public:
    explicit NoDesktop(std::function<void(const std::string& text)> onMessage)
        : onMessage_(std::move(onMessage)) {}

    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon /*icon*/) override { onMessage_(text); }
    using Desktop::askYesNo;
    bool askYesNo(const std::string& /*text*/, Answer /*proposed*/) override { return false; }
    Answer askYesNoCancel(const std::string& /*text*/) override { return Answer::cancel; }
    std::string chooseFileToOpen(const std::string& /*title*/,
                                 const FileFilter& /*filter*/) override {
        return {};
    }
    std::string chooseFileToSave(const std::string& /*title*/, const FileFilter& /*filter*/,
                                 const std::string& /*proposed*/) override {
        return {};
    }
    std::string defaultFolder() override { return {}; }
    std::string clipboardText() override { return {}; }
    void setClipboardText(const std::string& /*text*/) override {}
    void clearClipboard() override {}
    void setPointer(Pointer /*pointer*/) override {}
    void processPendingEvents() override {}

 private:
    std::function<void(const std::string&)> onMessage_;
};

/// Reads a configuration. Prints a line for each fault, and returns false if there is one: parts
/// with a fault are skipped, and could be lost without notice.
bool readConfiguration(const Tool& tool, const std::string& path, Document& document);

/// Reads any file. If that fails, prints a line with the reason and returns nothing.
std::optional<std::string> readFile(const Tool& tool, const std::string& path);

/// Returns false and prints a line if the file exists and `force` is false.
bool mayWrite(const Tool& tool, const std::string& path, bool force);

/// Writes a configuration, completely or not at all. If that fails, prints a line with the reason
/// and returns false.
bool writeConfiguration(const Tool& tool, const std::string& path, const Document& document);
