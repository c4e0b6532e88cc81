// The command that makes a table of a configuration.
#pragma once

#include <string>

#include "tool/Report.h"

struct ExportOptions {
    std::string file;
    std::string table;            ///< empty for the standard output
    std::string separator = ",";  ///< of columns; "tab" for that character
    bool force = false;
};

/// Writes a row for the settings, and one for each device, branch and item, each after what it
/// stands in. Gives the exit status.
int exportTable(const Tool& tool, const ExportOptions& options);
