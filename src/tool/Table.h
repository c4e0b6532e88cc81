// A table that is to become a configuration, as its text has it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tool/Columns.h"
#include "tool/Report.h"

/// The rows of a table below its headings. The columns may be in any order, and any but the path
/// may be missing.
class Table {
 public:
    /// Reads a table in UTF-8, with or without that encoding's mark, separated by ",", ";" or tabs:
    /// by what gives the most headings. Adds a finding for each fault, their file left empty; with
    /// one in the headings there are no rows.
    Table(std::string_view text, std::vector<Finding>& faults);

    std::size_t rows() const { return lines_.size(); }
    bool has(Column column) const { return placeOf(column).has_value(); }
    /// What a row has in a column; empty where the column is missing.
    std::string_view at(std::size_t row, Column column) const;
    /// The line that a row begins in, from 1.
    std::size_t lineOf(std::size_t row) const { return lines_[row]; }

 private:
    std::optional<std::size_t> placeOf(Column column) const {
        return places_[static_cast<std::size_t>(column)];
    }
    bool takeHeadings(std::size_t line, std::span<const std::string_view> fields,
                      std::vector<Finding>& faults);
    void takeRow(std::size_t line, std::span<const std::string_view> fields,
                 std::vector<Finding>& faults);

    std::array<std::optional<std::size_t>, columnNames.size()> places_;
    std::size_t width_ = 0;  // fields of a row
    // All fields, row after row: one text, so that 65,536 rows take no more than they must.
    std::string texts_;
    std::vector<std::uint32_t> ends_;
    std::vector<std::size_t> lines_;
};
