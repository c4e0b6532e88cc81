// The global settings of a configuration.
#pragma once

#include <cstdint>
#include <string>

/// The default bus connection of a configuration. It is stored in the file, proposed for a device
/// that the user adds, and set for every device that an import creates.
///
///     settings.SetDefaults();
///     device.SetByEts("Plant", settings);
struct GlobalSets {
    std::string port = "COM1";
    std::string ediType = "PEI16x9600";
    std::int32_t timeout = 1000;  ///< receive time-out in milliseconds

    /// Sets the values of a new configuration.
    void SetDefaults() { *this = GlobalSets(); }

    bool operator==(const GlobalSets&) const = default;
};
