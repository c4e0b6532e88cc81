// What the fields of an item may be chosen from.
#pragma once

#include <string>
#include <vector>

/// The EIS types, in the order of the item dialog's list. An item holds any text.
const std::vector<std::string>& dataTypeNames();

/// "READ", "WRITE" and "READWRITE".
const std::vector<std::string>& accessRightNames();
