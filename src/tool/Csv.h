// Writes and reads tables in the CSV format of RFC 4180 (https://www.rfc-editor.org/rfc/rfc4180).
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "file/Disk.h"

/// Writes a table in UTF-8, with a byte order mark, which spreadsheets need. Rows end with CR LF. A
/// field is quoted only if necessary.
///
///     CsvWriter table(',', write);
///     table.add("Hall, left");
///     table.endRow();
///     table.finish();
class CsvWriter {
 public:
    CsvWriter(char separator, Write write);

    void add(std::string_view field);
    void endRow();
    /// Writes the buffered rows. Must be called after the last row.
    void finish();

 private:
    Write write_;
    std::string bytes_;
    char separator_;
    bool rowBegun_ = false;
};

/// Called for each row, with the line in which it begins, from 1. Returns false to stop reading.
using TakeRow = std::function<bool(std::size_t line, std::span<const std::string_view> fields)>;

/// Raised for a missing quotation mark, or one inside a field without quotation marks.
struct CsvError {
    std::size_t line;  ///< where the row begins, from 1
};

/// Reads a table with that separator and calls `take` for each row. Rows end with CR LF, LF or CR;
/// empty lines are skipped. Blanks are part of their field. Raises CsvError for wrong quotation
/// marks, and the errors of `take`.
void readCsv(std::string_view text, char separator, const TakeRow& take);
