// The command that makes a configuration of a table.
#pragma once

#include <string>

#include "tool/Report.h"

struct ImportOptions {
    std::string table;
    std::string file;
    std::string base;  ///< the configuration that the rows are put into; empty for none
    bool force = false;
};

/// Makes a whole configuration of a table, or puts its rows into one: rows change what has their
/// path and add what is missing. Tells of every fault, and writes nothing if there is one. Gives
/// the exit status.
int importTable(const Tool& tool, const ImportOptions& options);
