// The disk of POSIX systems, in a temporary folder.
#ifndef _WIN32

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "file/Disk.h"
#include "model/RunTimeError.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

/// Does it as a user whom permissions stop; root is stopped by none.
template <typename Action>
void withoutPrivileges(const Action& action) {
    constexpr uid_t nobody = 65534;
    const bool root = ::geteuid() == 0;
    if (root) {
        ASSERT_EQ(::setresuid(nobody, nobody, 0), 0);
    }
    action();
    if (root) {
        ASSERT_EQ(::setresuid(0, 0, 0), 0);
    }
}

class SystemDiskTest : public ::testing::Test {
 protected:
    void SetUp() override {
        std::string name = fs::temp_directory_path() / "disk-test-XXXXXX";
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = name;
        permit(folder, 0777);
    }
    void TearDown() override { fs::remove_all(folder); }

    std::unique_ptr<Disk> disk = systemDisk();
    fs::path folder;

    void replace(const fs::path& path, std::string_view bytes) { disk->replace(path, bytes); }
    std::string read(const fs::path& path) { return disk->read(path); }

    static void permit(const fs::path& path, mode_t mode) {
        ASSERT_EQ(::chmod(path.c_str(), mode), 0) << path;
    }
    static mode_t permissions(const fs::path& path) {
        return static_cast<mode_t>(fs::status(path).permissions());
    }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(folder))
            found.push_back(entry.path().filename());
        return found;
    }

    /// The number of the error that is raised; 0 for none.
    template <typename Action>
    static int errorOf(Action&& action) {
        try {
            action();
        } catch (const RunTimeError& error) {
            return static_cast<int>(error.number());
        }
        return 0;
    }
    int replaceError(const fs::path& path, std::string_view bytes = "new") {
        return errorOf([&] { replace(path, bytes); });
    }
    /// Of reading, and of asking beforehand, which must agree.
    int readError(const fs::path& path) {
        const int error = errorOf([&] { read(path); });
        EXPECT_EQ(errorOf([&] { disk->requireReadable(path); }), error);
        return error;
    }
};

TEST_F(SystemDiskTest, MakesAndReplacesFilesAndLeavesNothingElse) {
    const std::string bytes("any\0byte\xFF\r\n", 11);
    EXPECT_FALSE(disk->exists(folder / "house.xml"));
    replace(folder / "house.xml", bytes);
    EXPECT_TRUE(disk->exists(folder / "house.xml"));
    EXPECT_EQ(read(folder / "house.xml"), bytes);

    permit(folder / "house.xml", 0640);
    replace(folder / "house.xml", "shorter");
    EXPECT_EQ(read(folder / "house.xml"), "shorter");
    EXPECT_EQ(permissions(folder / "house.xml"), 0640U);
    EXPECT_THAT(names(), ElementsAre("house.xml"));

    const std::string longestName(255, 'n');
    replace(folder / longestName, "");
    EXPECT_EQ(read(folder / longestName), "");
}

TEST_F(SystemDiskTest, FollowsSymbolicLinks) {
    fs::create_directory(folder / "server");
    fs::create_symlink("server/house.xml", folder / "relative.xml");
    fs::create_symlink(folder / "relative.xml", folder / "absolute.xml");
    replace(folder / "absolute.xml", "through a link to nothing yet");
    EXPECT_EQ(read(folder / "server/house.xml"), "through a link to nothing yet");
    replace(folder / "relative.xml", "again");
    EXPECT_EQ(read(folder / "server/house.xml"), "again");
    EXPECT_TRUE(fs::is_symlink(folder / "absolute.xml"));
    EXPECT_TRUE(fs::is_symlink(folder / "relative.xml"));

    fs::create_symlink("round.xml", folder / "round.xml");
    EXPECT_EQ(replaceError(folder / "round.xml"), 75);
    EXPECT_EQ(readError(folder / "round.xml"), 75);
}

TEST_F(SystemDiskTest, TellsWhyAFileCannotBeReplaced) {
    replace(folder / "house.xml", "old");
    EXPECT_EQ(replaceError(folder / "missing/house.xml"), 76);
    EXPECT_EQ(replaceError(folder / "house.xml/house.xml"), 76);
    EXPECT_EQ(replaceError(folder), 75);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(replaceError(folder / "pipe"), 75);
}

TEST_F(SystemDiskTest, KeepsTheOldFileWhenItMayNotWriteOne) {
    replace(folder / "house.xml", "old");
    fs::create_directory(folder / "shared");
    replace(folder / "shared/house.xml", "old");
    permit(folder / "house.xml", 0444);
    permit(folder / "shared/house.xml", 0666);
    permit(folder / "shared", 0555);
    withoutPrivileges([&] {
        EXPECT_EQ(replaceError(folder / "house.xml"), 70);
        EXPECT_EQ(replaceError(folder / "shared/house.xml"), 70);
        EXPECT_EQ(replaceError(folder / "shared/new.xml"), 70);
        EXPECT_EQ(errorOf([&] { disk->createFolders(folder / "shared/more"); }), 70);
    });
    EXPECT_EQ(read(folder / "house.xml") + read(folder / "shared/house.xml"), "oldold");
    permit(folder / "shared", 0777);  // so that it can be removed
}

TEST_F(SystemDiskTest, KeepsTheOldFileWhenTheDiskIsFull) {
    replace(folder / "house.xml", "old");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit little = before;
    little.rlim_cur = 4096;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &little), 0);
    const int error = replaceError(folder / "house.xml", std::string(100'000, 'x'));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(error, 61);
    EXPECT_EQ(read(folder / "house.xml"), "old");
    EXPECT_THAT(names(), ElementsAre("house.xml"));
}

TEST_F(SystemDiskTest, TellsWhyAFileCannotBeRead) {
    EXPECT_EQ(readError(folder), 75);
    EXPECT_EQ(readError(folder / "house.xml"), 53);
    EXPECT_EQ(readError(folder / "missing/house.xml"), 76);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(readError(folder / "pipe"), 75) << "at once, though nobody writes to it";
    replace(folder / "secret.xml", "");
    permit(folder / "secret.xml", 0200);
    withoutPrivileges([&] { EXPECT_EQ(readError(folder / "secret.xml"), 70); });
}

}  // namespace

#endif
