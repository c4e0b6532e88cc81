// The registry record of POSIX systems: a settings file.
#ifndef _WIN32

#include "file/FLRegistry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "file/Disk.h"

namespace {

void record(FLRegistry& registry, const std::string& path) {
    registry.SetRegValue(RegistryRoot::localMachine, R"(Software\QUONAutomation\OPCOlvan)",
                         "ConfigFile", path);
}

TEST(FLRegistry, KeepsOneLineInAFileOfItsOwn) {
    std::string folder = std::filesystem::temp_directory_path() / "registry-test-XXXXXX";
    ASSERT_NE(::mkdtemp(folder.data()), nullptr);
    const auto disk = systemDisk();
    const auto registry = systemRegistry(*disk, folder + "/.config");
    record(*registry, "/home/ann/house.xml");
    record(*registry, "/home/ann/büro=2.xml");
    record(*registry, "/home/ann/two\nConfigFile=lines.xml");
    EXPECT_EQ(disk->read(folder + "/.config/QUONAutomation/OPCOlvan.conf"),
              "ConfigFile=/home/ann/büro=2.xml\n");
    std::filesystem::remove_all(folder);
}

}  // namespace

#endif
