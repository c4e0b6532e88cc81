// The command "import", which makes a configuration from a table.
#pragma once

#include <string>

#include "tool/Report.h"

struct ImportOptions {
    std::string table;
    std::string file;
    std::string base;  ///< the configuration that the rows change; empty for none
    bool force = false;
};

/// Makes a new configuration from a table, or changes an existing one: a row changes the node with
/// its path, or adds it if there is none. Prints every finding, and writes nothing if one of them
/// is an error. Returns the exit status.
int importTable(const Tool& tool, const ImportOptions& options);
