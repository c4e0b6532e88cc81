// A disk and a registry in memory, with the faults that a test sets.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "base/RunTimeError.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"

/// If WRITTEN_FILES_DIR is set, copies a written configuration into that folder, where
/// scripts/check-files checks it against the schema. Each copy has a unique name that begins with
/// the test's.
inline void keepForSchemaCheck(const std::string& path, std::string_view bytes) {
    const char* const folder = std::getenv("WRITTEN_FILES_DIR");
    if (folder == nullptr || !path.ends_with(".xml")) return;
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test == nullptr ? "window" : test->name();  // null in Qt Test
    std::ranges::replace(name, '/', '-');                          // in the names of stories
    const std::string number = std::to_string(std::random_device()());
    std::ofstream copy(std::string(folder) + "/" + name + "-" + number + ".xml", std::ios::binary);
    if (!(copy << bytes << std::flush)) throw std::runtime_error("no copy for the schema check");
}

/// Fails with the first line that differs.
inline void expectSameFile(const std::string& actual, const std::string& expected) {
    std::istringstream actualLines(actual), expectedLines(expected);
    for (int number = 1; actual != expected; ++number) {
        std::string line, wanted;
        std::getline(actualLines, line);
        std::getline(expectedLines, wanted);
        if (line == wanted && actualLines && expectedLines) continue;
        ADD_FAILURE() << "line " << number << "\nexpected " << wanted << "\nactual   " << line;
        return;
    }
}

class FakeDisk : public Disk {
 public:
    /// Set by tests that save what is not well-formed XML: the format escapes nothing,
    /// deliberately. Such files are not copied for the schema check.
    bool writesSpoiledFiles = false;
    std::map<std::string, std::string> files;
    /// The errors that reading and replacing any file raise, if set.
    std::optional<ErrorNumber> readFault, writeFault;
    /// The modification time of all files. A test increments it to simulate another program.
    std::int64_t time = 0;

    bool exists(const std::string& path) override { return files.contains(path); }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        return exists(path) ? std::optional(FileStamp{0, time}) : std::nullopt;
    }

    /// Reports the size 0: reading must not rely on the size at opening.
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
