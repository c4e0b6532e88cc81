// The registry record on systems without a registry: a settings file.

#include <algorithm>

#include "file/Disk.h"
#include "file/FLRegistry.h"

namespace {

class SettingsFile : public FLRegistry {
 public:
    SettingsFile(Disk& disk, std::string folder) : disk_(disk), folder_(std::move(folder)) {}

    void SetRegValue(RegistryRoot /*root*/, const std::string& subKey, const std::string& valueName,
                     const std::string& text) override {
        // The file is read line by line, without escape sequences.
        if (std::ranges::any_of(text, isControl)) return;
        const std::string path = pathFor(subKey);
        disk_.createFolders(path.substr(0, path.rfind('/')));
        disk_.replace(path, valueName + "=" + text + "\n");
    }

 private:
    static bool isControl(char c) { return (c >= 0 && c < ' ') || c == 0x7F; }

    std::string pathFor(std::string subKey) const {
        std::ranges::replace(subKey, '\\', '/');
        const std::string_view software = "Software/";
        if (subKey.starts_with(software)) subKey.erase(0, software.size());
        return folder_ + "/" + subKey + ".conf";
    }

    Disk& disk_;
    std::string folder_;
};

}  // namespace

std::unique_ptr<FLRegistry> systemRegistry(Disk& disk, const std::string& settingsFolder) {
    return std::make_unique<SettingsFile>(disk, settingsFolder);
}
