// Parses the command line and runs the command.
#pragma once

#include <string>
#include <vector>

#include "tool/Report.h"

/// Runs the program with these arguments (UTF-8, without the program's name). Returns the exit
/// status: that of the command, or 2 for unknown arguments.
int runTool(const Tool& tool, std::vector<std::string> arguments);
