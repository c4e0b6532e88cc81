// Moves and copies branches and items by dragging their nodes.
#pragma once

#include <optional>
#include <string>

#include "desktop/Desktop.h"
#include "desktop/OpenBoxes.h"
#include "model/Document.h"

/// What a drop does. The values are those of the drop effects of OLE. `move` moves; every other
/// value copies.
enum class DropEffect : int { copy = 1, move = 2 };

/// A drag within the tree with the right mouse button. Its handlers are called in this order:
///
///     drag.TreeView1_MouseDown(TreeDrag::rightButton, 0, &node);
///     const DropEffect effect = drag.TreeView1_OLEStartDrag();
///     drag.TreeView1_OLEDragOver(&target);  // and OLEGiveFeedback, while the pointer moves
///     drag.TreeView1_OLEDragDrop(effect);   // or cancelled()
///
/// From OLEStartDrag to its end, a drag counts as an open box: until then nothing else may change
/// the configuration.
class TreeDrag {
 public:
    TreeDrag(Document& document, Desktop& desktop, OpenBoxes& boxes)
        : document_(document),
          desktop_(desktop),
          boxes_(boxes),
          mSourceNode(document.tree()),
          dropHighlight_(document.tree()) {}

    // Masks of mouse buttons and of the modifier keys.
    static constexpr int rightButton = 2;
    static constexpr int ctrlMask = 2;

    /// `node` is the node under the pointer; null over empty space. Returns whether a drag may
    /// begin.
    bool TreeView1_MouseDown(int button, int shift, Node* node);
    /// The dragged node, also after the drop and when its key or its place has changed; null when
    /// it is deleted. Its key is the data of the drag.
    Node* source() const { return mSourceNode.get(); }
    /// Returns `copy` when Ctrl was down when the button was pressed, otherwise `move`. Whether
    /// Ctrl is down later has no effect.
    DropEffect TreeView1_OLEStartDrag();
    void TreeView1_OLEGiveFeedback();
    void TreeView1_OLEDragOver(Node* node);
    /// Drops on the highlighted node. A copied branch or item shares its record with the original.
    void TreeView1_OLEDragDrop(DropEffect effect);
    /// Ends the drag without a drop; nothing is changed.
    void cancelled();

    /// The node under the pointer, which the view highlights; null when there is none.
    Node* dropHighlight() const { return dropHighlight_.get(); }

 private:
    void drop(Node& target, DropEffect effect);
    void refuse(const std::string& text, MessageIcon icon);
    void restoreViews();

    Document& document_;
    Desktop& desktop_;
    OpenBoxes& boxes_;
    std::optional<OpenBoxes::Open> underWay_;
    // Both keep their values after a drop.
    ConfigTree::Reference mSourceNode;
    int mShiftState = 0;
    ConfigTree::Reference dropHighlight_;
};
