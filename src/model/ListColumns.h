// The columns of the list: one table for devices and one for items.
#pragma once

#include <optional>
#include <vector>

#include "base/RunTimeError.h"
#include "model/ListView.h"

class clsItem;
class clsPLC;

/// A column, and the text of its cells:
///
///     fillCells(row, item, itemColumns(withIndex));
template <typename Record>
struct ListColumn {
    ListView::Column column;
    /// Returns the text of the cell. May raise a RunTimeError.
    SharedText (*textOf)(const Record& record);
    /// True when the list of a single item has the column too.
    bool ofSingleItem = true;
};

template <typename Record>
using ListColumns = std::vector<ListColumn<Record>>;

const ListColumns<clsPLC>& deviceColumns();
/// With `withIndex`, the columns for the items of a device or a branch; else those for a single
/// item.
const ListColumns<clsItem>& itemColumns(bool withIndex);

/// The columns without the functions, for ListView::setColumns().
template <typename Record>
std::vector<ListView::Column> headings(const ListColumns<Record>& columns) {
    std::vector<ListView::Column> all;
    for (const auto& each : columns)
        all.push_back(each.column);
    return all;
}

/// Sets the cells of a row from a record. A cell whose text raises an error keeps its former text.
/// Returns the first error; std::nullopt when there was none.
template <typename Record>
std::optional<RunTimeError> fillCells(ListView::Row& row, const Record& record,
                                      const ListColumns<Record>& columns) {
    std::optional<RunTimeError> fault;
    row.cells.resize(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        try {
            row.cells[i] = columns[i].textOf(record);
        } catch (const RunTimeError& error) {
            if (!fault) fault = error;
        }
    }
    return fault;
}
