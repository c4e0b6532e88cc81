// The command line: which command is run, and with what.
#pragma once

#include <string>
#include <vector>

#include "tool/Report.h"

/// Runs the program with these arguments (UTF-8, its own name left out). Gives the exit status: 2
/// for arguments that it does not understand.
int runTool(const Tool& tool, std::vector<std::string> arguments);
