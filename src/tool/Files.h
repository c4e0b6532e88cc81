// Configuration files for the commands: read whole, and written as the editor writes them.
#pragma once

#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"
#include "tool/Report.h"

/// The desktop of a program that nobody sits before: what is told is handed on, no file is chosen,
/// and each question has the answer that changes nothing.
class NoDesktop : public Desktop {
 public:
    explicit NoDesktop(std::function<void(const std::string& text)> told)
        : told_(std::move(told)) {}

    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon /*icon*/) override { told_(text); }
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
    std::function<void(const std::string&)> told_;
};

/// Reads a configuration. False, with a line for each fault, for one that cannot be read without a
/// message: what is left out of it could be lost without a word.
bool readConfiguration(const Tool& tool, const std::string& path, Document& document);

/// Reads a file of another kind. Nothing, with a line that says why, when that fails.
std::optional<std::string> readFile(const Tool& tool, const std::string& path);

/// False, with a line that says so, for a file that is there and must not be replaced.
bool mayWrite(const Tool& tool, const std::string& path, bool force);

/// Writes a configuration, whole or not at all. False, with a line that says why, when it was not
/// written.
bool writeConfiguration(const Tool& tool, const std::string& path, const Document& document);
