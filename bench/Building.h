// The configurations that are measured.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"

/// A desktop without a user. Any message ends the benchmark.
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

/// Fills the document with this number of items: 4,096 in each device, 1,024 in each floor, 32 in
/// each room.
void fillBuilding(Document& document, int items);

/// Fills the document with the same items, all in the branch "Building.ALL".
void fillOneBranch(Document& document, int items);

/// Adds a device with this name and one branch, "MORE", with this number of items.
void addBranchOf(Document& document, const std::string& device, int items);
