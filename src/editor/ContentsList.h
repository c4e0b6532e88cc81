// Fills the list with the contents of a node.
#pragma once

#include <string>
#include <vector>

#include "base/Reporting.h"
#include "model/Document.h"
#include "model/ListView.h"

/// Fills the list beside the tree from the document, updates it after a change, and returns what is
/// selected in it.
///
///     ContentsList contents(document, list);
///     contents.show(branch, desktop);
///     std::vector<Node*> items = contents.selectedItems();
class ContentsList {
 public:
    ContentsList(const Document& document, ListView& list) : document_(document), list_(list) {}

    const ListView& list() const { return list_; }

    /// Empties the list and ends its sorting, before another configuration is shown.
    void clear();

    void showDevices();
    /// Shows the devices for the root, the items below a device or a branch, or the item itself.
    /// Shows a message for each item whose address has no index.
    void show(const Node& node, const ShowMessage& showMessage);
    /// Updates the rows of a node that a dialog has changed, and of the nodes below it. `oldKey` is
    /// its key before the dialog.
    void showChange(const Node& node, const SharedText& oldKey, const ShowMessage& showMessage);
    /// Writes the present values of an item into the row at that place. Raises
    /// ErrorNumber::keyNotUnique when another row has its key.
    void refreshRow(std::size_t place, const Node& item);
    /// Does the same for all rows that show one of these items.
    void refresh(const std::vector<Node*>& items);
    /// Scrolls the node's row into view, if there is one.
    void ensureVisible(const Node& node);

    /// The number of selected items; 0 when a device or a branch is selected too.
    std::size_t selectedItemCount() const;
    /// The nodes of the selected rows, all of which show items. Raises ErrorNumber::invalidCall for
    /// a row that is out of date.
    std::vector<Node*> selectedItems() const;
    /// The selected rows in the text format that spreadsheets paste: the headings, then a line for
    /// each row, with tabs between the cells. Each line ends with CR LF.
    std::string selectedAsTable() const;

 private:
    const Document& document_;
    ListView& list_;
    bool withIndex_ = false;  // the items shown last have the index column
};
