// The contents list: columns, rows, selection, order and view mode, as plain data.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/KeyedSet.h"
#include "base/SharedText.h"
#include "base/Text.h"
#include "model/ConfigTree.h"

/// The contents of the list beside the tree. A view shows them, and is notified through its
/// listener.
///
///     list.setColumns(columns);
///     for (const Node* child : node.GetChildren()) list.addRow(rowOf(*child));
///     list.sortBy(ListView::nameColumn);
class ListView {
 public:
    enum class View { icon, smallIcon, list, report };

    /// True when `a` comes before `b`; false for equal texts.
    using Order = bool (*)(std::string_view a, std::string_view b);

    /// A column. The width is a fraction of the width of the list at the time when the columns are
    /// set.
    struct Column {
        std::string text;
        double width;
        Order before = &alphabeticallyBefore;  ///< the sort order of the column
    };
    /// The column that shows the node's name.
    static constexpr std::size_t nameColumn = 0;

    /// A row shows a node, and has its key and kind.
    struct Row {
        SharedText key;
        NodeKind kind = NodeKind::item;
        std::vector<SharedText> cells;  ///< one text for each column
        SharedText icon;                ///< key of the large icon
        bool selected = false;

        bool operator==(const Row&) const = default;

        /// The text in a column, counted from 0; empty when there is none.
        const SharedText& cell(std::size_t column) const;
        const SharedText& text() const { return cell(nameColumn); }
    };

    class Listener {
     public:
        virtual ~Listener() = default;

        /// Rows will be added, removed or sorted, or the columns change.
        virtual void aboutToReset() = 0;
        virtual void reset() = 0;
        /// Rows have other texts, keys or pictures. Never called between aboutToReset and reset.
        virtual void rowsChanged() = 0;
        /// The columns and their widths are new. Called between aboutToReset and reset.
        virtual void columnsBuilt() = 0;
        /// The view mode has changed. Never called between aboutToReset and reset.
        virtual void viewChanged() = 0;
        /// Asks the view to scroll to the row.
        virtual void madeVisible(std::size_t row) = 0;
    };

    /// Combines all changes of columns and rows during its lifetime: the listener gets one
    /// aboutToReset before the first change and one reset at the end, or one rowsChanged at the end
    /// if rows were only replaced. The rows are sorted at the end.
    ///
    ///     const ListView::Update update(list);
    class Update {
     public:
        explicit Update(ListView& list);
        Update(const Update&) = delete;
        Update& operator=(const Update&) = delete;
        ~Update();

     private:
        ListView& list_;
    };

    ListView() = default;
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;
    ~ListView() = default;

    void setListener(Listener* listener) { listener_ = listener; }

    View view() const { return view_; }
    void setView(View view);

    const std::vector<Column>& columns() const { return columns_; }
    void setColumns(std::vector<Column> columns);

    const std::deque<Row>& rows() const { return rows_; }
    void clearRows();
    /// Appends a row. No other row may have its key.
    void addRow(Row row);
    /// The index of the row with that key, from 0; std::nullopt when there is none.
    std::optional<std::size_t> findRow(const SharedText& key) const;

    /// Updates the keys of rows after the key of a node changed from `oldKey` to `newKey`: of its
    /// row, and of the rows of nodes below it. `isBelow` returns whether a key is that of the node
    /// or of one below it. The key alone does not say so, as a name may contain a ".".
    void rekeyRows(std::string_view oldKey, std::string_view newKey,
                   const std::function<bool(const SharedText& newKey)>& isBelow);
    /// Replaces the row at a place; whether it is selected stays. Raises ErrorNumber::keyNotUnique
    /// when another row has the key; then nothing has changed.
    void replaceRow(std::size_t place, Row row);
    void ensureVisible(std::size_t row);

    /// Called by the view when the user selects a row or clears its selection.
    void setSelected(std::size_t row, bool selected) { rows_[row].selected = selected; }
    /// The row that the user selected last, if it is still selected, else the first selected one;
    /// null when none is. Commands for a single row use it.
    const Row* selectedRow() const;
    std::size_t selectedCount() const;
    void setCurrentRow(std::optional<std::size_t> row) { current_ = row; }
    std::optional<std::size_t> currentRow() const { return current_; }

    /// Sorts the rows by the displayed texts of a column, always ascending; rows with equal texts
    /// keep their order. Sorting stays on when rows or columns change: the column with that number
    /// is used, if there is one.
    void sortBy(std::size_t column);
    /// Turns sorting off: rows that are added later stay in the order of adding.
    void stopSorting() { sortColumn_.reset(); }
    std::optional<std::size_t> sortColumn() const { return sortColumn_; }

 private:
    /// The index of the row with a key, and how KeyedSet finds it.
    struct Place {
        static bool isEmpty(const Place& place) { return place.key.empty(); }
        static const SharedText& keyOf(const Place& place) { return place.key; }
        static bool equal(std::string_view a, std::string_view b) { return a == b; }

        SharedText key;
        std::size_t row = 0;
    };

    void startReset();
    void sortRows();

    View view_ = View::report;
    std::vector<Column> columns_;
    std::deque<Row> rows_;
    mutable KeyedSet<Place, Place> places_;
    mutable bool placesKnown_ = false;  // places_ is filled at the first search
    std::optional<std::size_t> current_;
    Listener* listener_ = nullptr;
    int updates_ = 0;
    // During an Update:
    bool isResetting_ = false;
    bool rowsChanged_ = false;
    bool viewChanged_ = false;
    std::optional<std::size_t> sortColumn_;
};
