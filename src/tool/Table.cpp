#include "tool/Table.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "tool/Csv.h"

namespace {

std::optional<Column> columnNamed(std::string_view heading) {
    for (const Column column : allColumns)
        if (equalIgnoringCase(nameOf(column), heading)) return column;
    return std::nullopt;
}

/// The number of known headings when the table is read with that separator.
std::ptrdiff_t headingsWith(char separator, std::string_view text) {
    std::ptrdiff_t known = 0;
    try {
        readCsv(text, separator, [&](std::size_t /*line*/, auto fields) {
            known = std::ranges::count_if(
                fields, [](std::string_view field) { return columnNamed(field).has_value(); });
            return false;
        });
    } catch (const CsvError&) {
        // A quotation mark that is wrong with this separator may be right with another one.
    }
    return known;
}

/// The line of the first byte that is not UTF-8, from 1; 0 if there is none.
std::size_t lineNotUtf8(std::string_view text) {
    std::size_t line = 1;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == '\n') ++line;
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;
            continue;
        }
        const std::size_t start = i;
        constexpr std::string_view replacement = "\uFFFD";
        if (nextCharacter(text, i) == 0xFFFD && !text.substr(start).starts_with(replacement)) {
            return line;
        }
    }
    return 0;
}

}  // namespace

Table::Table(std::string_view text, std::vector<Finding>& faults) {
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    if (text.starts_with(utf8Mark)) text.remove_prefix(utf8Mark.size());
    if (const std::size_t line = lineNotUtf8(text); line > 0) {
        faults.push_back({.line = line, .text = "not UTF-8; save the table in that encoding"});
        return;
    }
    constexpr std::string_view separators = ",;\t";
    const char separator = *std::ranges::max_element(
        separators, {}, [&](char each) { return headingsWith(each, text); });
    try {
        bool atHeadings = true;
        readCsv(text, separator, [&](std::size_t line, auto fields) {
            if (!std::exchange(atHeadings, false)) {
                takeRow(line, fields, faults);
                return true;
            }
            return takeHeadings(line, fields, faults);
        });
        if (atHeadings) faults.push_back({.text = "no table: it is empty"});
    } catch (const CsvError& error) {
        faults.push_back(
            {.line = error.line, .text = "a quotation mark is missing, or stands within a field"});
    }
}

bool Table::takeHeadings(std::size_t line, std::span<const std::string_view> fields,
                         std::vector<Finding>& faults) {
    const std::size_t faultsBefore = faults.size();
    const auto fault = [&](std::string_view heading, const char* text) {
        faults.push_back({.line = line, .place = std::string(heading), .text = text});
    };
    width_ = fields.size();
    for (std::size_t place = 0; place < fields.size(); ++place) {
        const auto column = columnNamed(fields[place]);
        if (!column) {
            fault(fields[place], "no column of that name is known");
        } else if (std::exchange(places_[static_cast<std::size_t>(*column)], place)) {
            fault(fields[place], "this column is there twice");
        }
    }
    if (!has(Column::path)) fault(nameOf(Column::path), "this column is missing");
    return faults.size() == faultsBefore;
}

void Table::takeRow(std::size_t line, std::span<const std::string_view> fields,
                    std::vector<Finding>& faults) {
    if (fields.size() != width_) {
        faults.push_back({.line = line,
                          .text = std::to_string(fields.size()) + " fields, but " +
                                  std::to_string(width_) + " headings"});
        return;
    }
    // Spreadsheets write empty rows for deleted ones.
    if (std::ranges::all_of(fields, &std::string_view::empty)) return;
    for (const std::string_view field : fields) {
        texts_.append(field);
        ends_.push_back(static_cast<std::uint32_t>(texts_.size()));
    }
    lines_.push_back(line);
}

std::string_view Table::at(std::size_t row, Column column) const {
    const auto place = placeOf(column);
    if (!place) return {};
    const std::size_t field = row * width_ + *place;
    const std::size_t begin = field == 0 ? 0 : ends_[field - 1];
    return std::string_view(texts_).substr(begin, ends_[field] - begin);
}
