// What others would read a configuration file with: the least of each that a program needs, none
// of it checked but for the number of items. A wrong one ends the benchmark.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

/// What was read, for the time of freeing it to be left out of that of reading.
using Reading = std::shared_ptr<const void>;

/// The bare parser that the editor reads with too; nothing is made of what it tells.
void parseOnly(const std::string& bytes);

/// pugixml's elements, and of them plain records in hash maps by their keys.
Reading readIntoMaps(const std::string& path, std::size_t items);

/// Qt's reader, and Qt's model of rows and cells.
Reading readIntoQtModel(const std::string& path, std::size_t items);
