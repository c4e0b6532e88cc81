// Reads a configuration file.
#pragma once

#include <functional>
#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "model/Document.h"

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
bool ImportXML(
    const std::string& path, Document& document, Disk& disk, Desktop& desktop,
    const std::function<void()>& itemRead,
    const std::function<bool()>& goesOn = [] { return true; });
