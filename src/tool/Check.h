// The command "check", which finds faults in configurations.
#pragma once

#include <string>
#include <vector>

#include "tool/Report.h"

struct CheckOptions {
    std::vector<std::string> files;
    bool json = false;
    bool quiet = false;  ///< print nothing
};

/// Prints the faults that the reader of files reports, the texts that the file cannot hold, and
/// likely mistakes. Returns the exit status.
int check(const Tool& tool, const CheckOptions& options);
