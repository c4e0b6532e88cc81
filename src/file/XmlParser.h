// Reads XML text into elements.
#pragma once

#include <cstddef>
#include <string>

#include "file/Disk.h"
#include "model/XmlElement.h"

/// Hears of the elements of a file as they are read.
class XmlListener {
 public:
    virtual ~XmlListener() = default;

    /// An element begins within the one that began last and has not ended. True when its children
    /// are wanted: they stand in it when it ends, and are not told of one by one.
    virtual bool began(const XmlElement& element) = 0;
    virtual void ended(const XmlElement& element) = 0;

    /// One more little piece of the file was read, whatever it holds.
    virtual void pieceRead() {}

    /// True when it wants to know lines, which takes a twentieth longer.
    virtual bool wantsLines() const { return false; }
    /// The line in which the element that began last begins, from 1; after an error of the text,
    /// that of the error.
    std::size_t line = 0;
};

/// Elements that may lie within one another. A reader needs memory for each of them.
inline constexpr std::size_t mostElementLevels = 1100;

/// Reads a file and forgets each element once it has ended. Comments and processing instructions
/// are passed over.
///
/// A text that is not well-formed is refused. Of two rules others are stricter: names here may
/// have a prefix that nothing declares, and hold the letters ª, µ and º. A text that declares or
/// uses entities of its own is refused too: a configuration has no use for them, and they could
/// name other files or blow up a small file without bounds. So is one that declares attributes, for
/// each of which the parser looks at all before it, and one whose elements lie within one another
/// deeper than `mostElementLevels`. A byte order mark counts for more than the encoding that is
/// declared.
///
/// Raises the disk's errors, ErrorNumber::invalidFileFormat with line and reason, e.g. "Line 12:
/// mismatched tag", for a text that is not XML in an encoding that is known here (ISO-8859-1,
/// US-ASCII, UTF-8, UTF-16, Windows-1252), ErrorNumber::outOfMemory for one of 2 GiB, and what
/// the listener raises.
void readXml(Disk& disk, const std::string& path, XmlListener& listener);
