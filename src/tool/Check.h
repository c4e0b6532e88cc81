// The command that tells what is wrong in configurations.
#pragma once

#include <string>
#include <vector>

#include "tool/Report.h"

struct CheckOptions {
    std::vector<std::string> files;
    bool json = false;
    bool quiet = false;  ///< only the exit status tells
};

/// Tells of what the reader of files reports, of what the file cannot hold, and of what most often
/// is a mistake. Gives the exit status.
int check(const Tool& tool, const CheckOptions& options);
