// Deleting nodes.
#pragma once

#include <string>
#include <utility>

#include "desktop/Desktop.h"
#include "editor/ActiveControl.h"
#include "model/Document.h"
#include "model/ListView.h"

/// The command that deletes the selected rows when the list is active, or the selected node with
/// all nodes below it when the tree is. It asks the user first.
///
///     ActiveControl active = ActiveControl::tree;
///     Deletion deletion(document, desktop, list, active, clickNode);
///     deletion.mnuDelete_Click();
class Deletion {
 public:
    Deletion(Document& document, Desktop& desktop, const ListView& list,
             const ActiveControl& active, ClickNode click)
        : document_(document),
          desktop_(desktop),
          list_(list),
          active_(active),
          click_(std::move(click)) {}

    void mnuDelete_Click();

 private:
    void deleteRows();
    void removeSelectedRows();
    void deleteNode();
    void deleteItem(const ConfigTree::Reference& item, const std::string& question);
    void remove(Node& node);

    Document& document_;
    Desktop& desktop_;
    const ListView& list_;
    const ActiveControl& active_;
    ClickNode click_;
};
