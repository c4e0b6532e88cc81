// Reads XML text into elements.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "file/Disk.h"
#include "model/XmlElement.h"

/// Hears of an element as it ends, of those within another before it; `depth` is 1 for the root.
using ElementEnded = std::function<void(XmlElement element, std::size_t depth)>;

/// Reads a file, a piece after the other, and tells of the elements down to a depth. What is below
/// the root is forgotten once it was told of, so that a large file need not be held whole.
///
///     readXml(disk, "/home/ann/house.xml", 2, [&](XmlElement element, std::size_t depth) {
///         if (depth == 2) count(element);
///     });
///
/// Reading is strict: what is accepted here is well-formed XML to any other reader. A text that
/// declares or uses entities of its own is refused: a configuration has no use for them, and
/// they could name other files or blow up a small file without bounds.
///
/// Raises the disk's errors, ErrorNumber::invalidFileFormat with line and reason, e.g. "Line 12:
/// mismatched tag", for a text that is not XML in an encoding that is known here (ISO-8859-1,
/// US-ASCII, UTF-8, UTF-16, Windows-1252), ErrorNumber::outOfMemory for one of 2 GiB, and what
/// `ended` raises.
void readXml(Disk& disk, const std::string& path, std::size_t deepest, const ElementEnded& ended);
