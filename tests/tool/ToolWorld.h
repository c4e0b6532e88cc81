// The command line program with a fake disk, and helpers for tables.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/FakeDisk.h"
#include "tool/CommandLine.h"
#include "tool/Csv.h"

class ToolWorld {
 public:
    FakeDisk disk;
    std::string out;
    std::string err;

    /// Runs a command such as "diff a.xml b.xml". Returns the exit status.
    int run(const std::string& command) {
        std::istringstream words(command);
        std::vector<std::string> arguments;
        for (std::string word; words >> word;)
            arguments.push_back(word);
        std::deque<Document> documents;
        std::ostringstream outStream;
        std::ostringstream errStream;
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
    std::vector<std::string> headings;
    TableRows rows;
    readCsv(csv, separator, [&](std::size_t /*line*/, auto fields) {
        if (headings.empty()) {
            headings.assign(fields.begin(), fields.end());
            return true;
        }
        TableRow& row = rows.emplace_back();
        for (std::size_t i = 0; i < fields.size(); ++i)
            row[headings[i]] = fields[i];
        return true;
    });
    return rows;
}

/// Returns a table of these rows with these columns.
inline std::string csvOf(const TableRows& rows, const std::vector<std::string>& headings,
                         char separator = ',') {
    std::string csv;
    CsvWriter writer(separator, [&](std::string_view bytes) { csv += bytes; });
    for (const auto& heading : headings)
        writer.add(heading);
    writer.endRow();
    for (const TableRow& row : rows) {
        for (const auto& heading : headings) {
            const auto field = row.find(heading);
            writer.add(field == row.end() ? "" : field->second);
        }
        writer.endRow();
    }
    writer.finish();
    return csv;
}

inline const std::vector<std::string> allHeadings{
    "path",     "kind",         "name", "comment", "address",  "index",   "data type",
    "elements", "access right", "flag", "port",    "EDI type", "time-out"};
