// Copying and pasting items.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

#include "desktop/Desktop.h"
#include "editor/ActiveControl.h"
#include "model/Document.h"
#include "model/ListView.h"

/// The editor's own clipboard of items, and the commands that fill it and paste from it. The system
/// clipboard is not used.
///
///     CopyPaste copyPaste(document, desktop, list, activeControl, clickNode);
///     copyPaste.mnuCopy_Click();   // what is selected in the active view
///     copyPaste.mnuPaste_Click();  // into the selected device or branch
///
/// The clipboard refers to the records of the configuration, not to copies of them. So an item that
/// is changed after copying is pasted with the changes, and a deleted item can still be pasted.
class CopyPaste {
 public:
    CopyPaste(Document& document, Desktop& desktop, const ListView& list,
              const ActiveControl& active, ClickNode click)
        : document_(document),
          desktop_(desktop),
          list_(list),
          active_(active),
          click_(std::move(click)) {}

    /// Empties the clipboard, before another configuration is shown.
    void reset();

    /// Copies the selected rows when the list is active, the selected node when the tree is.
    /// Refuses items that still have a default name, and branches, which can be copied by dragging
    /// only.
    void mnuCopy_Click();

    /// Pastes into the selected device or branch. If another item there has the name, in upper or
    /// lower case, appends "_" and the paste counter until the name is free. If a branch has the
    /// name, shows an error and stops; the items that were pasted before stay.
    void mnuPaste_Click();

 private:
    void copyRows();
    void copyNode();
    void take(Node& node);
    void paste();
    void pasteInto(Node& target);

    struct Copied {
        Copied(std::shared_ptr<const clsItem> item, const ConfigTree& tree, Node& of)
            : record(std::move(item)), node(tree, &of) {}

        std::shared_ptr<const clsItem> record;
        ConfigTree::Reference node;
    };
    using Items = std::deque<Copied>;

    Document& document_;
    Desktop& desktop_;
    const ListView& list_;
    const ActiveControl& active_;
    ClickNode click_;
    std::optional<Items> clipboard_;  // none before the first configuration
    std::int16_t pasteCounter_ = 1;
};
