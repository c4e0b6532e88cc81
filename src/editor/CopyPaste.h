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

/// The editor's own clipboard of items, and the commands that fill it and paste from it. It lives
/// as long as the editor; the system clipboard is not involved. It refers to the very records of
/// the configuration: an item that is changed after copying is pasted as it is now, and one that
/// is deleted is pasted all the same.
class CopyPaste {
 public:
    CopyPaste(Document& document, Desktop& desktop, const ListView& list,
              const ActiveControl& active, ClickNode click)
        : document_(document),
          desktop_(desktop),
          list_(list),
          active_(active),
          click_(std::move(click)) {}

    /// Empties the clipboard, for another configuration.
    void reset();

    /// Copies the selected rows when the list has the focus, the selected node when the tree has.
    /// Items that still have a default name are refused, branches too: those are dragged.
    void mnuCopy_Click();

    /// Pastes into the selected device or branch. A name that another item there has, in whatever
    /// case, gets "_" and the paste counter, as often as it takes; one that a branch has ends the
    /// pasting with an error, and the items before it stay.
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
