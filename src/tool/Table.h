// A table read from its text, as input of the import.
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

/// The rows of a table without its headings. The columns may have any order, and all except the
/// path may be missing.
class Table {
 public:
    /// Reads a table in UTF-8, with or without byte order mark. The separator is ",", ";" or tab:
    /// the one with which most headings are known. Adds a finding, without file, for each fault. If
    /// the headings have a fault, there are no rows.
    Table(std::string_view text, std::vector<Finding>& faults);

    std::size_t rows() const { return lines_.size(); }
    bool has(Column column) const { return placeOf(column).has_value(); }
    /// The text of a row in a column; empty if the column is missing.
    std::string_view at(std::size_t row, Column column) const;
    /// The line in which a row begins, from 1.
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
    std::size_t width_ = 0;  // number of fields in each row
    // All fields, row by row, in one text: this takes the least memory for many rows.
    std::string texts_;
    std::vector<std::uint32_t> ends_;
    std::vector<std::size_t> lines_;
};
