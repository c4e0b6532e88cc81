// Writes a configuration file.
#pragma once

#include <string>

#include "desktop/Desktop.h"
#include "file/Disk.h"
#include "model/Document.h"

/// Writes the whole configuration to the file at `path` in ISO-8859-1, one byte for each character.
/// Texts are written without escaping, so the caller asks FileRules first: refusal() must return
/// nothing. The new file replaces the old one in one step, after all of it was written. Returns
/// false, after a message to the user, if it could not be written; the old file is unchanged then.
///
///     const FileRules rules(document);
///     if (rules.refusal()) return false;
///     return CreateXML("/home/ann/house.xml", document, disk, desktop);
bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop);
