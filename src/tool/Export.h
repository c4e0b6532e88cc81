// The command "export", which makes a table from a configuration.
#pragma once

#include <string>

#include "tool/Report.h"

struct ExportOptions {
    std::string file;
    std::string table;            ///< the file to write; empty for the standard output
    std::string separator = ",";  ///< between columns: ",", ";" or "tab"
    bool force = false;
};

/// Writes one row for the settings and one for each device, branch and item. Parents come before
/// their children. Returns the exit status.
int exportTable(const Tool& tool, const ExportOptions& options);
