// The find dialog.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Selects the nodes of the tree whose text begins as the user types, in the order in which they
/// were added. It stays open beside the main window.
class frmFind {
 public:
    /// `focusTree` gives the main window's tree the focus; false, and nothing may be selected,
    /// while that window waits for another dialog.
    frmFind(Document& document, Desktop& desktop, std::function<bool()> focusTree)
        : document_(document), desktop_(desktop), focusTree_(std::move(focusTree)) {}

    static constexpr const char* caption = "Find Item";
    Label lblName{"Type the name of the item to find"};
    TextBox txtFind;
    Button cmdFind{"Find"};
    Button cmdNext{"Find Next"};
    Button cmdCancel{"Exit"};

    void Form_Load();
    void Form_Unload() { loaded_ = false; }
    /// The first match.
    void cmdFind_Click();
    /// The match after as many as this button was pressed since the dialog was loaded, whatever
    /// else happened; the last one when there are fewer.
    void cmdNext_Click();
    void cmdCancel_Click() { Form_Unload(); }

    bool loaded() const { return loaded_; }
    /// The text is one that the last search did not find.
    bool isNotFound() const { return !notFound_.empty() && notFound_ == txtFind.text; }

 private:
    void selectMatch(int skipped);

    Document& document_;
    Desktop& desktop_;
    std::function<bool()> focusTree_;
    std::int16_t nextCounter_ = 0;
    std::string notFound_;  // what the last search looked for in vain
    bool loaded_ = false;
};
