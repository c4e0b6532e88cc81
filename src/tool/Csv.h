// Tables as text: rows of fields as RFC 4180 has them (https://www.rfc-editor.org/rfc/rfc4180).
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "file/Disk.h"

/// Writes a table in UTF-8, with the mark of that encoding, which spreadsheets need. Rows end with
/// CR LF; a field is quoted where it must be.
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
    /// Writes what has not been written yet.
    void finish();

 private:
    Write write_;
    std::string bytes_;
    char separator_;
    bool rowBegun_ = false;
};

/// Takes a row, and the line of the text that it begins in, from 1; false to hear of no more.
using TakeRow = std::function<bool(std::size_t line, std::span<const std::string_view> fields)>;

/// A quotation mark is missing, or stands within a field that is not in quotation marks.
struct CsvError {
    std::size_t line;  ///< the row's first, from 1
};

/// Reads a table with that separator. Rows end with CR LF, LF or CR; blank lines are passed over.
/// Blanks belong to the field that they stand in. Raises CsvError where quotation marks are not as
/// they must be, and what `take` raises.
void readCsv(std::string_view text, char separator, const TakeRow& take);
