// The command "convert", which makes a configuration from an ETS export.
#pragma once

#include <string>

#include "model/GlobalSets.h"
#include "tool/Report.h"

struct ConvertOptions {
    std::string exportFile;
    std::string file;
    GlobalSets settings;  ///< the global settings, and the settings of each device
    bool force = false;
};

/// Returns the exit status. Writes nothing if any part of the export cannot be converted.
int convertExport(const Tool& tool, const ConvertOptions& options);
