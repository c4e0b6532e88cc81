// The command "diff", which prints the differences between two configurations.
#pragma once

#include <string>

#include "tool/Report.h"

struct DiffOptions {
    std::string from;
    std::string to;
    bool json = false;
};

/// Prints each difference. Returns the exit status: 0 for no difference, 1 for some, 2 if a file
/// cannot be read.
int diff(const Tool& tool, const DiffOptions& options);
