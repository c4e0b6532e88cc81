// The global settings of a configuration.
#pragma once

#include <cstdint>
#include <string>

/// The bus connection that the whole configuration proposes: stored in its file, offered for a
/// device added by hand and given to every device that an import creates.
struct GlobalSets {
    std::string port;
    std::string ediType;
    std::int32_t timeout = 0;  ///< receive time-out in milliseconds

    GlobalSets() { SetDefaults(); }

    /// "COM1", "PEI16x9600", 1000 ms.
    void SetDefaults() {
        port = "COM1";
        ediType = "PEI16x9600";
        timeout = 1000;
    }

    bool operator==(const GlobalSets&) const = default;
};
