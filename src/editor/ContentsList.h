// What the list shows of a node.
#pragma once

#include <string>
#include <vector>

#include "base/Reporting.h"
#include "model/Document.h"
#include "model/ListView.h"

/// Fills the list beside the tree from the document, brings it up to date after a change, and says
/// what is selected in it.
///
///     ContentsList contents(document, list);
///     contents.show(branch, desktop);
class ContentsList {
 public:
    ContentsList(const Document& document, ListView& list) : document_(document), list_(list) {}

    const ListView& list() const { return list_; }

    /// Empties the list, for another configuration, whose lists nobody has sorted yet.
    void clear();

    void showDevices();
    /// Shows the devices for the root, its items for a device or a branch, and an item by itself.
    /// Tells of items whose address has no index.
    void show(const Node& node, const ShowMessage& showMessage);
    /// Shows in place what a dialog has made of the node, which had that key.
    void showChange(const Node& node, const SharedText& oldKey, const ShowMessage& showMessage);
    /// Shows an item as it is now in the row at that place. Raises ErrorNumber::keyNotUnique when
    /// another row has its key.
    void refreshRow(std::size_t place, const Node& item);
    /// The same for the rows that show one of these items.
    void refresh(const std::vector<Node*>& items);
    /// Scrolls the node's row into view, if there is one.
    void ensureVisible(const Node& node);

    /// The number of selected items; 0 when something else is selected too.
    std::size_t selectedItemCount() const;
    /// The nodes of the selected rows, which are items. Raises ErrorNumber::invalidCall for a row
    /// that is out of date.
    std::vector<Node*> selectedItems() const;
    /// The selected rows as spreadsheets exchange them: the headings, then a line for each row,
    /// with tabs between the cells. Each line ends with CR LF.
    std::string selectedAsTable() const;

 private:
    const Document& document_;
    ListView& list_;
    bool withIndex_ = false;  // the items shown last have the column
};
