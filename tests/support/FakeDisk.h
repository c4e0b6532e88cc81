// A disk and a registry in memory, with the faults that a test asks for.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "file/Disk.h"
#include "file/FLRegistry.h"
#include "model/RunTimeError.h"

class FakeDisk : public Disk {
 public:
    std::map<std::string, std::string> files;
    /// When set, reading or replacing any file fails so.
    std::optional<ErrorNumber> readFault;
    std::optional<ErrorNumber> writeFault;

    bool exists(const std::string& path) override { return files.contains(path); }

    void requireReadable(const std::string& path) override { read(path); }

    std::string read(const std::string& path) override {
        if (readFault) throw RunTimeError(*readFault);
        if (!files.contains(path)) throw RunTimeError(ErrorNumber::fileNotFound);
        return files[path];
    }

    void replace(const std::string& path, std::string_view bytes) override {
        if (writeFault) throw RunTimeError(*writeFault);
        files[path] = bytes;
    }

    void createFolders(const std::string& /*path*/) override {}
};

class FakeRegistry : public FLRegistry {
 public:
    /// "subKey|valueName|text" of every call.
    std::vector<std::string> calls;

    void SetRegValue(RegistryRoot /*root*/, const std::string& subKey, const std::string& valueName,
                     const std::string& text) override {
        calls.push_back(subKey + "|" + valueName + "|" + text);
    }
};
