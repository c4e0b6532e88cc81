// Other ways to read a configuration file, for comparison. Each does only the minimum that a
// program needs, and checks only the number of items: a wrong number ends the benchmark.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

/// Keeps alive what was read, so that freeing it is not measured.
using Reading = std::shared_ptr<const void>;

/// Runs the parser of the editor, Expat, alone, and ignores its events.
void parseOnly(const std::string& bytes);

/// Reads with pugixml, then makes plain records in hash maps by key.
Reading readIntoMaps(const std::string& path, std::size_t items);

/// Reads with QXmlStreamReader into a QStandardItemModel.
Reading readIntoQtModel(const std::string& path, std::size_t items);
