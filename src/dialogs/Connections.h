// The ports and EDI types that the device dialog and the global settings propose.
#pragma once

#include <string>
#include <vector>

const std::vector<std::string>& portNames();
const std::vector<std::string>& ediTypes();
