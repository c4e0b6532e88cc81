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
/// `itemRead` is called after every item. False, after telling the user, when nothing was read:
/// the file cannot be read, is not XML, or has another root element.
bool ImportXML(const std::string& path, Document& document, Disk& disk, Desktop& desktop,
               const std::function<void()>& itemRead);
