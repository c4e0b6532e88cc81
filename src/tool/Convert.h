// The command that makes a configuration of an ETS export.
#pragma once

#include <string>

#include "model/GlobalSets.h"
#include "tool/Report.h"

struct ConvertOptions {
    std::string exportFile;
    std::string file;
    GlobalSets settings;  ///< also those of each device
    bool force = false;
};

/// Gives the exit status. Nothing is written of an export that cannot be taken whole.
int convertExport(const Tool& tool, const ConvertOptions& options);
