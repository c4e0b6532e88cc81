// What the list shows of devices and items: one table of columns for each.
#pragma once

#include <optional>
#include <vector>

#include "base/RunTimeError.h"
#include "model/ListView.h"

class clsItem;
class clsPLC;

/// A column, and what stands in it.
template <typename Record>
struct ListColumn {
    ListView::Column column;
    /// The cell's text. May raise an error.
    SharedText (*textOf)(const Record& record);
    /// The list of a single item has the column too.
    bool ofSingleItem = true;
};

template <typename Record>
using ListColumns = std::vector<ListColumn<Record>>;

const ListColumns<clsPLC>& deviceColumns();
/// `withIndex`: those of a device's or a branch's items, else those of a single item.
const ListColumns<clsItem>& itemColumns(bool withIndex);

template <typename Record>
std::vector<ListView::Column> headings(const ListColumns<Record>& columns) {
    std::vector<ListView::Column> all;
    for (const auto& each : columns)
        all.push_back(each.column);
    return all;
}

/// Gives a row the texts of a record. A cell whose text cannot be made stays as it is; gives the
/// first error that was met.
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
