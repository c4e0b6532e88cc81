// A disk and a registry in memory, with the faults that a test asks for.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/RunTimeError.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"

/// Leaves a copy of a written configuration in the folder that the environment names, if it does:
/// there scripts/check-files holds it against the schema. A file of its own for each writing, also
/// when several processes run tests at once; named after the test.
inline void keepForSchemaCheck(const std::string& path, std::string_view bytes) {
    const char* const folder = std::getenv("WRITTEN_FILES_DIR");
    if (folder == nullptr || !path.ends_with(".xml")) return;
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test == nullptr ? "window" : test->name();  // not all are GoogleTest's
    std::ranges::replace(name, '/', '-');                          // of a story
    const std::string number = std::to_string(std::random_device()());
    std::ofstream copy(std::string(folder) + "/" + name + "-" + number + ".xml", std::ios::binary);
    if (!(copy << bytes << std::flush)) throw std::runtime_error("no copy for the schema check");
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
    /// When all files were changed last: moved on by a test that plays another program.
    std::int64_t time = 0;

    bool exists(const std::string& path) override { return files.contains(path); }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        if (!files.contains(path)) return std::nullopt;
        return FileStamp{0, time};
    }

    /// As if each had grown to its size since it was opened.
    InputFile openToRead(const std::string& path) override {
        if (readFault) throw RunTimeError(*readFault);
        if (!files.contains(path)) throw RunTimeError(ErrorNumber::fileNotFound);
        const auto bytes = std::make_shared<std::istringstream>(files[path]);
        return {0, [bytes](char* to, std::size_t most) {
                    bytes->read(to, static_cast<std::streamsize>(most));
                    return static_cast<std::size_t>(bytes->gcount());
                }};
    }

    using Disk::replace;
    void replace(const std::string& path,
                 const std::function<void(const Write&)>& contents) override {
        if (writeFault) throw RunTimeError(*writeFault);
        std::string bytes;
        contents([&](std::string_view more) { bytes += more; });
        files[path] = bytes;
        if (!writesSpoiledFiles) keepForSchemaCheck(path, bytes);
    }

    void createFolders(const std::string& /*path*/) override {}
};

class FakeRegistry : public FLRegistry {
 public:
    /// "subKey|valueName|text" of every call.
    std::vector<std::string> calls;
    bool fails = false;

    void SetRegValue(RegistryRoot /*root*/, const std::string& subKey, const std::string& valueName,
                     const std::string& text) override {
        if (fails) throw std::runtime_error("no registry");
        calls.push_back(subKey + "|" + valueName + "|" + text);
    }
};
