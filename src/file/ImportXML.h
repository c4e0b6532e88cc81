// Reads a configuration file.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "model/Document.h"

/// Hears of what is read, and in which line of the file it begins.
class ReadingListener {
 public:
    virtual ~ReadingListener() = default;

    /// A device, branch or item was read.
    virtual void read(const Node& node, std::size_t line) = 0;
    /// The message about a fault, in the element of that line in what `parent` stands for: null
    /// where that is no device or branch. Line 0 where none is known.
    virtual void fault(const std::string& message, const Node* parent, std::size_t line) = 0;
};

/// Reads the configuration file at `path` into the document, whose tree holds the root only and
/// whose registries are empty.
///
/// A fault in one device, branch or item is told with the general error message; that element is
/// passed over and reading goes on, so a partly read configuration can result. Of these messages
/// the first five are shown once the file is read, and one that tells how many there are besides.
/// `itemRead` is called after every item. Pending events get their turn by the clock, whatever the
/// file holds, and then `goesOn` is asked: false ends the reading without a word.
///
/// False when nothing was read: it was ended so; or, after telling the user, the file cannot be
/// read, is not XML, has another root element, or would take more memory than any configuration
/// needs.
///
/// A `listener` is told of all faults, each with its line, in the user's place.
bool ImportXML(
    const std::string& path, Document& document, Disk& disk, Desktop& desktop,
    const std::function<void()>& itemRead,
    const std::function<bool()>& goesOn = [] { return true; }, ReadingListener* listener = nullptr);
