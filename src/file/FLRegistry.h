// The registry record, in which the OPC server finds its configuration.
#pragma once

#include <memory>
#include <string>

class Disk;

enum class RegistryRoot { localMachine };

/// Named texts that other programs read. Texts are UTF-8.
class FLRegistry {
 public:
    virtual ~FLRegistry() = default;

    /// Stores a text under a name, in a key ("Software\Company\Product") that is made when it is
    /// not there. May fail in any way, as the user may lack the right to write there: who saves
    /// passes that over.
    virtual void SetRegValue(RegistryRoot root, const std::string& subKey,
                             const std::string& valueName, const std::string& text) = 0;
};

/// On Windows the registry itself. Elsewhere a small settings file below `settingsFolder`: the
/// key "Software\Company\Product" is the file Company/Product.conf, and its one value the line
/// "ConfigFile=/home/ann/house.xml". A text with control characters is left out.
std::unique_ptr<FLRegistry> systemRegistry(Disk& disk, const std::string& settingsFolder);
