// The registry record that tells the OPC server where its configuration file is.
#pragma once

#include <memory>
#include <string>

class Disk;

enum class RegistryRoot { localMachine };

/// Stores named texts for other programs. All texts are UTF-8.
///
///     const auto registry = systemRegistry(disk, "/home/ann/.config");
///     registry->SetRegValue(RegistryRoot::localMachine, "Software\\Company\\Product",
///                           "ConfigFile", "/home/ann/house.xml");
class FLRegistry {
 public:
    virtual ~FLRegistry() = default;

    /// Stores a text under a name. The key ("Software\Company\Product") is created if it is
    /// missing. May raise any error or fail without one, as the user may lack the right to write
    /// there. A save succeeds all the same.
    virtual void SetRegValue(RegistryRoot root, const std::string& subKey,
                             const std::string& valueName, const std::string& text) = 0;
};

/// On Windows, the registry of Windows. On other systems, a settings file below `settingsFolder`:
/// the key "Software\Company\Product" is the file Company/Product.conf, and its only value is the
/// line "ConfigFile=/home/ann/house.xml". A text with control characters is not stored.
std::unique_ptr<FLRegistry> systemRegistry(Disk& disk, const std::string& settingsFolder);
