// Reads XML text into elements.
#pragma once

#include <string_view>

#include "model/XmlElement.h"

/// The elements of one XML text.
///
///     const XmlDocument document(bytes);
///     for (auto child = document.root().firstChild(); child; child = child.nextSibling()) ...
///
/// Reading is strict: what is accepted here is well-formed XML to any other reader. A text that
/// declares or uses entities of its own is refused: a configuration has no use for them, and
/// they could name other files or blow up a small file without bounds.
class XmlDocument {
 public:
    /// Raises ErrorNumber::invalidFileFormat with line and reason, e.g.
    /// "Line 12: mismatched tag", for a text that is not XML in an encoding that is known here
    /// (ISO-8859-1, US-ASCII, UTF-8, UTF-16), and ErrorNumber::outOfMemory for one of 2 GiB.
    explicit XmlDocument(std::string_view bytes);

    XmlElement root() const { return {elements_, 0}; }

    /// How many elements there are.
    std::size_t count() const { return elements_.entries.size(); }

 private:
    XmlElements elements_;
};
