// Functions of the command line that differ between systems.
#pragma once

#include <string>
#include <vector>

/// The program's arguments in UTF-8, without its name.
std::vector<std::string> utf8Arguments(int count, char** arguments);

/// Makes the terminal show standard output and standard error as UTF-8. Their bytes are written
/// unchanged, without conversion of line ends.
void showUtf8();
