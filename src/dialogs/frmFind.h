// The find dialog.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "dialogs/Controls.h"
#include "model/Document.h"

/// Finds the nodes of the tree whose text begins with what the user has typed, ignoring case, and
/// selects them in the order in which they were added. It stays open beside the main window.
class frmFind {
 public:
    /// `focusTree` moves the focus to the tree of the main window. It returns false while that
    /// window waits for another dialog; then nothing may be selected.
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
    /// Selects the first match.
    void cmdFind_Click();
    /// Selects the next match. Deliberate: it skips as many matches as this button was pressed
    /// since the dialog was loaded, even after another search. Selects the last match when there
    /// are fewer.
    void cmdNext_Click();
    void cmdCancel_Click() { Form_Unload(); }

    bool loaded() const { return loaded_; }
    /// True while the text is the one that the last search did not find.
    bool isNotFound() const { return !notFound_.empty() && notFound_ == txtFind.text; }

 private:
    void selectMatch(int skipped);

    Document& document_;
    Desktop& desktop_;
    std::function<bool()> focusTree_;
    std::int16_t nextCounter_ = 0;
    std::string notFound_;  // the text that the last search did not find
    bool loaded_ = false;
};
