// Moving and copying branches and items by dragging their nodes.
#pragma once

#include <string>

#include "desktop/Desktop.h"
#include "model/Document.h"

/// What a drag does, by the constants of OLE's drop effects. Only a move is one; any other value
/// acts as a copy.
enum class DropEffect : int { copy = 1, move = 2 };

/// A drag within the tree, with the right mouse button, in the order of its events: MouseDown,
/// then OLEStartDrag; OLEDragOver and OLEGiveFeedback while it goes on; OLEDragDrop, or
/// cancelled, at its end.
class TreeDrag {
 public:
    TreeDrag(Document& document, Desktop& desktop)
        : document_(document),
          desktop_(desktop),
          mSourceNode(document.tree()),
          dropHighlight_(document.tree()) {}

    // Masks of mouse buttons and of the keyboard's state.
    static constexpr int rightButton = 2;
    static constexpr int ctrlMask = 2;

    /// `node` lies under the pointer; null over empty space. True when a drag begins.
    bool TreeView1_MouseDown(int button, int shift, Node* node);
    /// The dragged node, also after it was dropped, whatever has become of its key and place; null
    /// once it is gone. Its key is the drag's data.
    Node* source() const { return mSourceNode.get(); }
    /// A copy when Ctrl was held as the button went down; later it does not matter.
    DropEffect TreeView1_OLEStartDrag() const;
    void TreeView1_OLEGiveFeedback();
    void TreeView1_OLEDragOver(Node* node);
    /// Drops on the highlighted node. A copied branch or item shares its record with its source.
    void TreeView1_OLEDragDrop(DropEffect effect);
    /// The drag ended without a drop: all is as it was.
    void cancelled() { restoreViews(); }

    /// The node under the pointer, which a view marks; null when there is none.
    Node* dropHighlight() const { return dropHighlight_.get(); }

 private:
    void drop(Node& target, DropEffect effect);
    void refuse(const std::string& text, MessageIcon icon);
    void restoreViews();

    Document& document_;
    Desktop& desktop_;
    // Both keep their values after a drop.
    ConfigTree::Reference mSourceNode;
    int mShiftState = 0;
    ConfigTree::Reference dropHighlight_;
};
