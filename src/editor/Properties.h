// Adding and changing devices, branches and items in their dialogs.
#pragma once

#include "desktop/Desktop.h"
#include "dialogs/Forms.h"
#include "editor/ActiveControl.h"
#include "editor/ContentsList.h"
#include "model/Document.h"

/// The commands that open a dialog on a part of the configuration; tree and list show afterwards
/// what has become of it.
class Properties {
 public:
    Properties(Document& document, Desktop& desktop, Forms& forms, ContentsList& contents,
               ClickNode click)
        : document_(document),
          desktop_(desktop),
          forms_(forms),
          contents_(contents),
          click_(std::move(click)) {}

    /// Opens the dialog of a device, a branch or an item; does nothing for the root.
    void open(Node& node);
    /// Opens one dialog for all items that are selected in the list.
    void openForItems();

    // What is added is selected and brought into sight; of items, the last one is brought there.
    void mnuAddPlc_Click();
    void mnuAddBranch_Click();
    void mnuAddItem_Click();

 private:
    void changeDevice(Node& node);
    void changeBranch(Node& node);
    void changeItem(Node& node);
    Node& selectContainer();

    Document& document_;
    Desktop& desktop_;
    Forms& forms_;
    ContentsList& contents_;
    ClickNode click_;
};
