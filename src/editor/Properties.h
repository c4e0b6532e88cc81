// Opens the dialogs that add and change devices, branches and items.
#pragma once

#include "desktop/Desktop.h"
#include "dialogs/Forms.h"
#include "editor/ActiveControl.h"
#include "editor/ContentsList.h"
#include "model/Document.h"

/// The commands that open a dialog for a part of the configuration. Afterwards tree and list show
/// the result.
///
///     Properties properties(document, desktop, forms, contents, clickNode);
///     properties.open(node);          // changes it
///     properties.mnuAddItem_Click();  // adds an item to the selected node
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
    /// Opens one dialog for all items that are selected in the list. Raises
    /// ErrorNumber::invalidCall for a row that is out of date.
    void openForItems();

    // The new node is selected and scrolled into view. Of several new items, the last one is only
    // scrolled into view.
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
