// Writes a configuration file.
#pragma once

#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "model/Document.h"

/// Writes the whole configuration to the file at `path`, one byte a character (ISO-8859-1), as its
/// texts are: whether they can be read back is for the FileRules, which must have no refusal. The
/// text is complete before the old file is touched, and takes its place in one step. False, after
/// telling the user, when it could not be written; the old file is as it was then.
bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop);
