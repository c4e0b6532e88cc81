// The command line program with a fake disk, and helpers for tables.
#pragma once

#include <nlohmann/json.hpp>
#include <regex>

#include "support/FakeDisk.h"
#include "tool/CommandLine.h"
#include "tool/Csv.h"

class ToolWorld {
 public:
    FakeDisk disk;
    std::string out, err;

    /// Runs a command such as "diff a.xml b.xml". Returns the exit status.
    int run(const std::string& command) {
        std::istringstream words(command);
        const std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
        std::deque<Document> documents;
        std::ostringstream outStream, errStream;
        const int status = runTool({disk, outStream, errStream, documents}, arguments);
        out = outStream.str();
        err = errStream.str();
        return status;
    }

    /// Runs a command that must succeed without errors and warnings.
    void must(const std::string& command) {
        ASSERT_EQ(run(command), 0) << command << "\n" << err;
        ASSERT_EQ(err, "") << command;
    }
};

/// The rows of a table: fields by heading.
using TableRow = std::map<std::string, std::string>;
using TableRows = std::vector<TableRow>;

inline TableRows rowsOf(std::string_view csv, char separator = ',') {
    if (csv.starts_with("\xEF\xBB\xBF")) csv.remove_prefix(3);
    std::vector<std::vector<std::string>> lines;
    readCsv(csv, separator, [&](std::size_t /*line*/, auto fields) {
        lines.emplace_back(fields.begin(), fields.end());
        return true;
    });
    TableRows rows(lines.size() - 1);
    for (std::size_t i = 0; i < rows.size(); ++i)
        for (std::size_t column = 0; column < lines[0].size(); ++column)
            rows[i][lines[0][column]] = lines[i + 1].at(column);
    return rows;
}

/// Returns a table of these rows with these columns.
inline std::string csvOf(TableRows rows, const std::vector<std::string>& headings,
                         char separator = ',') {
    rows.emplace(rows.begin());
    for (const std::string& heading : headings)
        rows.front()[heading] = heading;
    std::string csv = "\xEF\xBB\xBF";
    for (TableRow& row : rows)
        for (const std::string& heading : headings) {
            const std::string text = std::regex_replace(row[heading], std::regex("\""), "\"\"");
            const bool isQuoted =
                text.find_first_of(std::string("\"\r\n") + separator) != text.npos;
            csv += isQuoted ? '"' + text + '"' : text;
            csv += &heading == &headings.back() ? "\r\n" : std::string(1, separator);
        }
    return csv;
}

inline const std::vector<std::string> allHeadings{
    "path",     "kind",         "name", "comment", "address",  "index",   "data type",
    "elements", "access right", "flag", "port",    "EDI type", "time-out"};
