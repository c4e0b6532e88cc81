// The command that tells what differs between two configurations.
#pragma once

#include <string>

#include "tool/Report.h"

struct DiffOptions {
    std::string from;
    std::string to;
    bool json = false;
};

/// Tells of each change. Gives the exit status: 0 for no difference, 1 for some, 2 for a file that
/// cannot be read.
int diff(const Tool& tool, const DiffOptions& options);
