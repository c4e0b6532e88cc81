// Deleting nodes.
#pragma once

#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"

class frmEditing;

/// The command that deletes the selected rows when the list has the focus, the selected node with
/// all that is below it when the tree has; both after a question.
class Deletion {
 public:
    Deletion(Document& document, Desktop& desktop, frmEditing& form)
        : document_(document), desktop_(desktop), form_(form) {}

    void mnuDelete_Click();

 private:
    void deleteRows();
    void removeSelectedRows();
    void deleteNode();
    void deleteItem(const ConfigTree::Reference& item, const std::string& question);
    void remove(Node& node);

    Document& document_;
    Desktop& desktop_;
    frmEditing& form_;
};
