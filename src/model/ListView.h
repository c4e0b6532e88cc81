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

/// What the list beside the tree shows. A view follows it through its listener.
class ListView {
 public:
    enum class View { icon, smallIcon, list, report };

    /// True when one text comes before the other; never for two that are equal.
    using Order = bool (*)(std::string_view a, std::string_view b);

    /// A column header; the width is a fraction of the list's own width at the moment when the
    /// columns are built.
    struct Column {
        std::string text;
        double width;
        Order before = &alphabeticallyBefore;  ///< how rows are sorted by it
    };
    /// The column that shows the node's name.
    static constexpr std::size_t nameColumn = 0;

    /// A row shows a node: its key and kind are the node's.
    struct Row {
        SharedText key;
        NodeKind kind = NodeKind::item;
        std::vector<SharedText> cells;  ///< by the columns
        SharedText icon;                ///< key of the large picture
        bool selected = false;

        bool operator==(const Row&) const = default;

        /// The text in a column; empty where there is none.
        const SharedText& cell(std::size_t column) const;
        const SharedText& text() const { return cell(nameColumn); }
    };

    class Listener {
     public:
        virtual ~Listener() = default;

        virtual void aboutToReset() = 0;
        virtual void reset() = 0;
        /// The columns are new, and with them their widths; told within a change of rows.
        virtual void columnsBuilt() = 0;
        /// Never told within a change of rows, but after it.
        virtual void viewChanged() = 0;
        /// The row is to be scrolled into view.
        virtual void madeVisible(std::size_t row) = 0;
    };

    /// Every change of columns and rows stands between an aboutToReset and a reset; all that
    /// happens while an Update lives is one such change. At its end the rows are in their order.
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
    /// Appends a row. No other may have its key.
    void addRow(Row row);
    /// The place of the row with that key, if there is one.
    std::optional<std::size_t> findRow(const SharedText& key) const;

    /// A node got `newKey` in place of `oldKey`: its row, and those of nodes below it, follow.
    /// `isBelow` says whether a key is now that of the node, or of one below it: with a "." in a
    /// name, a key may only look so.
    void rekeyRows(std::string_view oldKey, std::string_view newKey,
                   const std::function<bool(const SharedText& newKey)>& isBelow);
    /// Shows another row at a place, selected or not as the one before. Raises
    /// ErrorNumber::keyNotUnique when it has a new key, and another row has that; then nothing has
    /// changed.
    void replaceRow(std::size_t place, Row row);
    void ensureVisible(std::size_t row);

    /// The view tells which rows the user has selected.
    void setSelected(std::size_t row, bool selected) { rows_[row].selected = selected; }
    /// The row that the user selected last, if it still is, else the first that is: the rules of
    /// single rows start from it.
    const Row* selectedRow() const;
    std::size_t selectedCount() const;
    void setCurrentRow(std::optional<std::size_t> row) { current_ = row; }
    std::optional<std::size_t> currentRow() const { return current_; }

    /// Sorts the rows by the displayed texts of a column, always ascending; rows that show the
    /// same text keep their order. Sorting stays switched on: whatever rows come or change, and
    /// whatever columns, the column at that place counts, if there is one.
    void sortBy(std::size_t column);
    /// Rows that come from now on stay in the order in which they are added.
    void stopSorting() { sortColumn_.reset(); }
    std::optional<std::size_t> sortColumn() const { return sortColumn_; }

 private:
    /// Where the row with a key stands, and how the places are found by it.
    struct Place {
        static bool isEmpty(const Place& place) { return place.key.empty(); }
        static const SharedText& keyOf(const Place& place) { return place.key; }
        static bool equal(std::string_view a, std::string_view b) { return a == b; }

        SharedText key;
        std::size_t row = 0;
    };

    void sortRows();

    View view_ = View::report;
    std::vector<Column> columns_;
    std::deque<Row> rows_;
    mutable KeyedSet<Place, Place> places_;
    mutable bool placesKnown_ = false;  // not before they are asked for
    std::optional<std::size_t> current_;
    Listener* listener_ = nullptr;
    int updates_ = 0;
    bool viewChanged_ = false;  // within an update
    std::optional<std::size_t> sortColumn_;
};
