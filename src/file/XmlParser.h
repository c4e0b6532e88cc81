// Reads XML text into elements.
#pragma once

#include <string>
#include <string_view>

#include "file/Disk.h"
#include "model/XmlElement.h"

/// The elements of one XML text.
///
///     const XmlDocument document(disk, "/home/ann/house.xml");
///     for (auto child = document.root().firstChild(); child; child = child.nextSibling()) ...
///
/// Reading is strict: what is accepted here is well-formed XML to any other reader. A text that
/// declares or uses entities of its own is refused: a configuration has no use for them, and
/// they could name other files or blow up a small file without bounds.
class XmlDocument {
 public:
    /// Reads a file, a piece after the other. Raises the disk's errors,
    /// ErrorNumber::invalidFileFormat with line and reason, e.g. "Line 12: mismatched tag", for a
    /// text that is not XML in an encoding that is known here (ISO-8859-1, US-ASCII, UTF-8,
    /// UTF-16, Windows-1252), and ErrorNumber::outOfMemory for one of 2 GiB.
    XmlDocument(Disk& disk, const std::string& path);

    /// The same for a text at hand.
    explicit XmlDocument(std::string_view bytes);

    XmlElement root() const { return {elements_, 0}; }

    /// How many elements there are.
    std::size_t count() const { return elements_.entries.size(); }

 private:
    XmlElements elements_;
};
