// Reads XML text into elements.
#pragma once

#include <cstddef>
#include <string>

#include "file/Disk.h"
#include "model/XmlElement.h"

/// Receives the elements of a file as they are read. The base class of those who use them:
///
///     MyListener listener;  // derived from XmlListener
///     readXml(disk, "/house.xml", listener);
///     listener.result();
class XmlListener {
 public:
    virtual ~XmlListener() = default;

    /// Called at the start tag of an element. Its parent is the last element that has not ended.
    /// Returns true to get the children together: the element then contains them in ended(), and
    /// began() and ended() are not called for them.
    virtual bool began(const XmlElement& element) = 0;
    /// Called at the end tag.
    virtual void ended(const XmlElement& element) = 0;

    /// Called after every small part of the file, whatever it contains.
    virtual void pieceRead() {}

    /// Returns true to get lines. Reading then takes a twentieth longer.
    virtual bool wantsLines() const { return false; }
    /// In began(), the line of the element's start tag, from 1. After readXml() raised
    /// invalidFileFormat, the line of the fault.
    std::size_t line = 0;
};

/// How deep elements may be nested. The reader needs memory for each open element.
inline constexpr std::size_t maxElementDepth = 1100;

/// Reads an XML file and calls the listener for each element. An element is freed after ended().
/// Comments and processing instructions are skipped.
///
/// Encodings are ISO-8859-1, US-ASCII, UTF-8, UTF-16 and Windows-1252. A byte order mark overrides
/// the declared encoding. Two rules are less strict than in other readers: a name may have a prefix
/// that is not declared, and may contain the letters ª, µ and º.
///
/// Refused, besides a text that is not well-formed:
/// - a text that declares or uses its own entities: a configuration does not need them, and they
///   could name other files or make a small file grow without limit;
/// - a text that declares attributes: the parser compares each of them with all before it;
/// - elements nested deeper than `maxElementDepth`.
///
/// Raises the errors of the disk and of the listener; ErrorNumber::invalidFileFormat with line and
/// reason, such as "Line 12: mismatched tag", for a text that is refused; ErrorNumber::outOfMemory
/// for a file of 2 GiB or more.
void readXml(Disk& disk, const std::string& path, XmlListener& listener);
