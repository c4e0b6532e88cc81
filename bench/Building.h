// What the measurements work on.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"

/// Nobody sits before a benchmark; whatever is told ends it.
class SilentDesktop : public Desktop {
 public:
    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon /*icon*/) override {
        std::fprintf(stderr, "%s\n", text.c_str());
        std::abort();
    }
    bool askYesNo(const std::string& /*text*/, Answer /*proposed*/) override { return true; }
    Answer askYesNoCancel(const std::string& /*text*/) override { return Answer::cancel; }
    std::string chooseFileToOpen(const std::string& /*title*/,
                                 const FileFilter& /*filter*/) override {
        return {};
    }
    std::string chooseFileToSave(const std::string& /*title*/, const FileFilter& /*filter*/,
                                 const std::string& /*proposedName*/) override {
        return {};
    }
    std::string defaultFolder() override { return "/"; }
    std::string clipboardText() override { return clipboard; }
    void setClipboardText(const std::string& text) override { clipboard = text; }
    void clearClipboard() override { clipboard.clear(); }
    void setPointer(Pointer /*pointer*/) override {}
    void processPendingEvents() override {}

    std::string clipboard;
};

/// A building of so many group addresses: devices of 4,096, floors of 1,024, rooms of 32.
void fillBuilding(Document& document, int items);

/// The same group addresses, all in one branch, "Building.ALL".
void fillOneBranch(Document& document, int items);

/// A device of that name with one branch, "MORE", of so many items more.
void addBranchOf(Document& document, const std::string& device, int items);
