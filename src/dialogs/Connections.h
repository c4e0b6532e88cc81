// What the device dialog and the global settings propose for a bus connection.
#pragma once

#include <string>
#include <vector>

const std::vector<std::string>& portNames();
const std::vector<std::string>& ediTypes();
