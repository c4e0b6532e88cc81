// The disk of POSIX systems, in a temporary folder.
#ifndef _WIN32

#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "file/Disk.h"
#include "model/RunTimeError.h"

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

constexpr uid_t nobody = 65534;

/// Does it as a user, of one more group, whom permissions stop; root is stopped by none.
template <typename Action>
void asUser(uid_t user, gid_t group, const Action& action) {
    const bool root = ::geteuid() == 0;
    if (root) {
        const bool changed = ::setgroups(1, &group) == 0 && ::setresgid(user, user, 0) == 0;
        ASSERT_TRUE(changed && ::setresuid(user, user, 0) == 0);
    }
    action();
    if (root) {
        ASSERT_TRUE(::setresuid(0, 0, 0) == 0 && ::setresgid(0, 0, 0) == 0);
        ASSERT_EQ(::setgroups(0, nullptr), 0);
    }
}

/// The steps of a save are the disk's calls of the functions below, counted from 1. The chosen one
/// fails with the error, or kills the process where that is 0.
struct {
    int chosen = 0;
    int error = 0;
    int made = 0;
} steps;

template <typename... Arguments>
int step(long systemCall, Arguments... arguments) {
    if (steps.chosen == 0 || ++steps.made != steps.chosen) {
        return static_cast<int>(::syscall(systemCall, arguments...));
    }
    if (steps.error == 0) ::kill(::getpid(), SIGKILL);
    errno = steps.error;
    return -1;
}

}  // namespace

// Instead of those of the C library.
extern "C" {
int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return step(SYS_openat, AT_FDCWD, path, flags, mode);
}
ssize_t write(int file, const void* bytes, std::size_t n) {
    return step(SYS_write, file, bytes, n);
}
int fstat(int file, struct stat* status) noexcept { return step(SYS_fstat, file, status); }
int fchown(int file, uid_t user, gid_t group) noexcept {
    return step(SYS_fchown, file, user, group);
}
int fchmod(int file, mode_t mode) noexcept { return step(SYS_fchmod, file, mode); }
ssize_t getxattr(const char* path, const char* name, void* value, std::size_t n) noexcept {
    return step(SYS_getxattr, path, name, value, n);
}
int fsetxattr(int file, const char* name, const void* value, std::size_t n, int how) noexcept {
    return step(SYS_fsetxattr, file, name, value, n, how);
}
int fsync(int file) { return step(SYS_fsync, file); }
int rename(const char* from, const char* to) noexcept {
    return step(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to);
}
}

namespace {

/// Gives a file, or a folder's new files, an access list (linux/posix_acl_xattr.h): read and write
/// for the owner and one more user, nothing for the group and others. False where there are none.
bool giveAccess(const fs::path& path, uid_t user, const char* list = "system.posix_acl_access") {
    const std::uint32_t all = ~0U, readWrite = 6U << 16U;
    const std::uint32_t bytes[] = {
        2, 1 | readWrite, all, 2 | readWrite, user, 4, all, 16 | readWrite, all, 32, all};
    return ::setxattr(path.c_str(), list, bytes, sizeof bytes, 0) == 0;
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

    static std::ptrdiff_t openFiles() {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    }

    std::unique_ptr<Disk> disk = systemDisk();
    fs::path folder;
    int chosenStep = 0;
    std::ptrdiff_t openBefore = openFiles();

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
    asUser(nobody, nobody, [&] {
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

TEST_F(SystemDiskTest, LeavesTheOldOrTheNewFileWhateverFailsOrKills) {
    const fs::path house = folder / "house.xml";
    const std::pair<int, int> faults[] = {
        {EIO, 75}, {ENOSPC, 61}, {EPERM, 70}, {EINTR, 75}, {0, 0}};
    for (const auto& [error, number] : faults) {
        int refused = 0;
        for (bool past = false; !past;) {
            replace(house, "old");
            permit(house, 0640);
            EXPECT_TRUE(::geteuid() != 0 || ::chown(house.c_str(), 1001, 2000) == 0);
            giveAccess(house, 1002);
            steps = {++chosenStep, error};
            const bool kills = error == 0;
            const pid_t child = kills ? ::fork() : -1;
            const int got = child > 0 ? 0 : replaceError(house);
            past = steps.made < steps.chosen;
            steps = {};
            if (child == 0) ::_exit(past ? 1 : 0);
            int status = 0;
            if (kills) past = ::waitpid(child, &status, 0) == child && !WIFSIGNALED(status);
            SCOPED_TRACE("step " + std::to_string(chosenStep) + ", " + std::to_string(error));
            const std::string now = read(house);
            EXPECT_TRUE(now == "new" ? got == 0 : now == "old" && (kills || got == number)) << got;
            EXPECT_EQ(permissions(house) & 07U, 0U);
            refused += now == "old" ? 1 : 0;
            if (kills) replace(house, "next");
            EXPECT_THAT(names(), ElementsAre("house.xml"));
        }
        EXPECT_GE(refused, 7) << "too few steps were met";
        chosenStep = 0;
    }
    EXPECT_EQ(openFiles(), openBefore);
}

TEST_F(SystemDiskTest, LeavesASharedFileToThoseWhoHadIt) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act for several users";
    constexpr uid_t alice = 1001, bob = 1002, carol = 1003;
    constexpr gid_t team = 2000;
    const fs::path house = folder / "house.xml";
    const auto give = [&](gid_t group, mode_t mode) {
        fs::remove(house);
        replace(house, "old");
        ASSERT_EQ(::chown(house.c_str(), alice, group), 0);
        permit(house, mode);
    };
    const auto savesAs = [&](uid_t user, gid_t group) {
        int error = 0;
        asUser(user, group, [&] { error = replaceError(house); });
        return error;
    };
    const auto readsAs = [&](uid_t user, gid_t group) {
        int error = 0;
        asUser(user, group, [&] { error = readError(house); });
        return error;
    };
    give(team, 06660);
    EXPECT_EQ(savesAs(bob, team) + savesAs(alice, team) + savesAs(bob, team), 0);
    EXPECT_EQ(readsAs(alice, team) + readsAs(bob, team) + readsAs(carol, team), 0);
    EXPECT_EQ(readsAs(carol, carol), 70);
    EXPECT_EQ(permissions(house), 0660U) << "who saved it did not get alice's and team's rights";
    give(team, 0646);
    EXPECT_EQ(savesAs(bob, bob), 70) << "team could not read it any more";
    give(team, 0666);
    EXPECT_EQ(savesAs(bob, bob), 0);

    give(alice, 0600);
    if (!giveAccess(house, bob)) GTEST_SKIP() << "no access lists here";
    ::setxattr(house.c_str(), "user.note", "n", 1, 0);
    EXPECT_EQ(savesAs(alice, alice) + readsAs(bob, bob), 0);
    EXPECT_EQ(readsAs(carol, alice), 70) << "the list gives the group nothing";
    EXPECT_EQ(::getxattr(house.c_str(), "user.note", nullptr, 0), 1);
    give(alice, 0660);
    giveAccess(folder, carol, "system.posix_acl_default");
    EXPECT_EQ(savesAs(0, 0), 0);
    EXPECT_EQ(readsAs(carol, carol), 70) << "the folder's list is for new files";
}

TEST_F(SystemDiskTest, TellsWhyAFileCannotBeRead) {
    replace(folder / "huge.xml", "");
    fs::resize_file(folder / "huge.xml", std::uintmax_t{1} << 31U);
    EXPECT_EQ(readError(folder / "huge.xml"), 7) << "at once";
    EXPECT_EQ(readError(folder), 75);
    EXPECT_EQ(readError(folder / "house.xml"), 53);
    EXPECT_EQ(readError(folder / "missing/house.xml"), 76);
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(readError(folder / "pipe"), 75) << "at once, though nobody writes to it";
    replace(folder / "secret.xml", "");
    permit(folder / "secret.xml", 0200);
    asUser(nobody, nobody, [&] { EXPECT_EQ(readError(folder / "secret.xml"), 70); });
}

}  // namespace

#endif
