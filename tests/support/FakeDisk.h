// A disk and a registry in memory, with the faults that a test asks for.
#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "file/Disk.h"
#include "file/FLRegistry.h"
#include "model/RunTimeError.h"

/// Leaves a copy of a written configuration in the folder that the environment names, if it does:
/// there scripts/check-files holds it against the schema. A file of its own for each writing, also
/// when several processes run tests at once; named after the test.
inline void keepForSchemaCheck(const std::string& path, std::string_view bytes) {
    const char* const folder = std::getenv("WRITTEN_FILES_DIR");
    if (folder == nullptr || !path.ends_with(".xml")) return;
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = test == nullptr ? "window" : test->name();  // not all are GoogleTest's
    std::FILE* file = nullptr;
    for (int i = 1; file == nullptr; ++i) {
        const std::string copy = std::string(folder) + "/" + name + "-" + std::to_string(i);
        file = std::fopen((copy + ".xml").c_str(), "wbx");  // x: not one that is there already
        if (file == nullptr && errno != EEXIST) break;
    }
    if (file == nullptr || std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() ||
        std::fclose(file) != 0) {
        std::perror(folder);
        std::abort();
    }
}

class FakeDisk : public Disk {
 public:
    /// Set by a test that saves what no XML reader can read: nothing is escaped in the file, so
    /// some names and comments spoil it, and that is meant. It is kept from the schema check.
    bool writesSpoiledFiles = false;
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
        if (!writesSpoiledFiles) keepForSchemaCheck(path, bytes);
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
