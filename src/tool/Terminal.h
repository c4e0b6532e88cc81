// What only one system offers to a program of the command line.
#pragma once

#include <string>
#include <vector>

/// The program's arguments in UTF-8, without its name.
std::vector<std::string> utf8Arguments(int count, char** arguments);

/// Has what is written to the standard output and error shown as UTF-8, and their bytes left as
/// they are.
void showUtf8();
