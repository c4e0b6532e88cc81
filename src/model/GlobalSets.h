// The global settings of a configuration.
#pragma once

#include <cstdint>
#include <string>

/// The bus connection that the whole configuration proposes: stored in its file, offered for a
/// device added by hand and given to every device that an import creates.
struct GlobalSets {
    std::string port = "COM1";
    std::string ediType = "PEI16x9600";
    std::int32_t timeout = 1000;  ///< receive time-out in milliseconds

    void SetDefaults() { *this = GlobalSets(); }

    bool operator==(const GlobalSets&) const = default;
};
