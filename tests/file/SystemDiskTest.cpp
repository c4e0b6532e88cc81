// The disk and the settings file of POSIX systems, in a temporary folder.

// Its inline functions would prevent this file from replacing functions of the C library.
#undef _FORTIFY_SOURCE

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/xattr.h>

#include <csignal>
#include <cstdarg>
#include <filesystem>
#include <fstream>

#include "base/RunTimeError.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"

namespace {

namespace fs = std::filesystem;
using fs::perms;

/// Each call of a function below is a step, counted from 1. The chosen one fails with the error, or
/// kills the process if the error is 0.
struct {
    int chosen, error, made;
} steps{};

/// Behaviour of network file systems.
struct {
    std::size_t mostReadAtOnce = ~std::size_t{0};
    bool losesAnswers = false;
} network;

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

// They replace those of the C library.
extern "C" {
int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, mode_t);
    va_end(rest);
    return step(SYS_openat, AT_FDCWD, path, flags, mode);
}
int fcntl(int file, int command, ...) {
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return step(SYS_fcntl, file, command, argument);
}
ssize_t read(int file, void* to, size_t n) {
    return step(SYS_read, file, to, std::min(n, network.mostReadAtOnce));
}
ssize_t write(int file, const void* from, size_t n) { return step(SYS_write, file, from, n); }
int fstat(int file, struct stat* status) noexcept { return step(SYS_fstat, file, status); }
int fchown(int file, uid_t u, gid_t g) noexcept { return step(SYS_fchown, file, u, g); }
int fchmod(int file, mode_t mode) noexcept { return step(SYS_fchmod, file, mode); }
ssize_t getxattr(const char* path, const char* name, void* to, size_t n) noexcept {
    return step(SYS_getxattr, path, name, to, n);
}
int fsetxattr(int file, const char* name, const void* from, size_t n, int how) noexcept {
    return step(SYS_fsetxattr, file, name, from, n, how);
}
int fremovexattr(int file, const char* name) noexcept { return step(SYS_fremovexattr, file, name); }
int fsync(int file) { return step(SYS_fsync, file); }
int rename(const char* from, const char* to) noexcept {
    const int result = step(SYS_renameat, AT_FDCWD, from, AT_FDCWD, to);
    if (!network.losesAnswers || result != 0) return result;
    errno = ENOENT;  // the answer to the repeated request
    return -1;
}
}

namespace {

constexpr uid_t alice = 1001, bob = 1002, carol = 1003;
constexpr gid_t team = 2000;
constexpr int killed = -1, failed = 254, past = 255;  // other results than error numbers

std::ptrdiff_t countIn(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

/// Runs the action in a child process, as this user (root ignores permissions) and group. Returns
/// the number of the error that it raises, 0 for none.
int outcome(const std::function<void()>& action, uid_t user = 0, gid_t group = 0) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool root = ::geteuid() == 0;
        if (root && ::setgroups(1, &group) + ::setgid(user) + ::setuid(user) != 0) ::_exit(failed);
        const auto filesOpen = countIn("/proc/self/fd");
        int error = 0;
        try {
            action();
        } catch (const RunTimeError& raised) {
            error = static_cast<int>(raised.number());
        }
        ::_exit(countIn("/proc/self/fd") == filesOpen ? error : failed);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : killed;
}

/// Sets the access list (linux/posix_acl_xattr.h) of a file, or the default of a folder: read and
/// write for the owner and one more user, nothing for others. Returns false if not supported.
bool setAccessList(const fs::path& path, uid_t user, const char* list = "system.posix_acl_access") {
    const std::uint32_t all = ~0U, readWrite = 6U << 16U;
    const std::uint32_t bytes[] = {
        2, 1 | readWrite, all, 2 | readWrite, user, 4, all, 16 | readWrite, all, 32, all};
    return ::setxattr(path.c_str(), list, bytes, sizeof bytes, 0) == 0;
}

/// The permissions, and the size of the access list.
auto rightsOf(const fs::path& path) {
    return std::pair(fs::status(path).permissions(),
                     ::getxattr(path.c_str(), "system.posix_acl_access", nullptr, 0));
}

class SystemDiskTest : public ::testing::Test {
 protected:
    SystemDiskTest() {
        fs::create_directory(folder);
        fs::permissions(folder, perms::all);
        disk->replace(house, "old");
    }
    ~SystemDiskTest() override { fs::remove_all(folder); }

    const std::unique_ptr<Disk> disk = systemDisk();
    const fs::path folder = fs::temp_directory_path() / ("disk-test-" + std::to_string(::getpid()));
    const fs::path house = folder / "house.xml";

    int save(const fs::path& path, uid_t user = 0, gid_t group = 0) {
        return outcome([&] { disk->replace(path, "new"); }, user, group);
    }
    /// Opening must raise the same error as reading.
    int read(const fs::path& path, uid_t user = 0, gid_t group = 0) {
        const int error = outcome([&] { disk->read(path); }, user, group);
        EXPECT_EQ(outcome([&] { disk->openToRead(path); }, user, group), error) << path;
        return error;
    }
};

TEST_F(SystemDiskTest, ReplacesFilesAndFollowsLinks) {
    const std::string bytes("any\0byte\xFF\r\n", 11);
    disk->replace(house, bytes);
    for (const std::size_t most : {~std::size_t{0}, std::size_t{1}, std::size_t{4}}) {
        network = {most, true};
        EXPECT_EQ(save(house), 0);
        disk->replace(house, bytes);
        EXPECT_EQ(disk->read(house), bytes);
    }
    network = {};
    fs::permissions(house, perms{0640});
    fs::create_symlink("house.xml", folder / "relative");
    fs::create_symlink(folder / "relative", folder / "absolute");
    EXPECT_EQ(save(folder / "absolute"), 0);
    EXPECT_EQ(disk->read(house), "new");
    EXPECT_EQ(fs::status(house).permissions(), perms{0640});
    const auto stamp = disk->stampOf(house);
    ASSERT_TRUE(stamp);
    const auto time = fs::last_write_time(house);
    std::ofstream(house) << "NEW";
    fs::last_write_time(house, time);
    EXPECT_NE(disk->stampOf(house), stamp) << "same size and time";
    fs::remove(house);
    EXPECT_FALSE(disk->exists(house) || disk->stampOf(house));
    EXPECT_EQ(save(folder / "relative"), 0);
    EXPECT_TRUE(disk->exists(house) && fs::is_symlink(folder / "relative"));
    EXPECT_EQ(save(folder / std::string(255, 'n')), 0) << "the longest name";
    fs::path link = "house.xml";
    for (int i = 1; i <= 40; ++i, link = std::to_string(i - 1))
        fs::create_symlink(link, folder / std::to_string(i));
    EXPECT_EQ(read(folder / link) + save(folder / link), 0) << "as many links as Linux follows";
    EXPECT_EQ(countIn(folder), 44);
    fs::current_path(folder);
    EXPECT_EQ(save("relative") + save("here.xml") + read("here.xml"), 0);
    EXPECT_EQ(read("missing"), 53);
    fs::current_path("/");
    fs::resize_file(house, maxBytesRead);
    EXPECT_EQ(disk->openToRead(house).size, maxBytesRead);
}

TEST_F(SystemDiskTest, ReportsWhyAFileCannotBeReadOrReplaced) {
    fs::create_directory(folder / "shared");
    fs::create_symlink("round", folder / "round");
    EXPECT_EQ(::mkfifo((folder / "pipe").c_str(), 0666), 0);
    EXPECT_EQ(save(folder / "shared/house.xml") + save(folder / "huge"), 0);
    fs::resize_file(folder / "huge", std::uintmax_t{1} << 31U);
    fs::permissions(folder / "shared/house.xml", perms{0666});
    fs::permissions(folder / "shared", perms{0555});
    fs::permissions(folder / "huge", perms{0666});
    EXPECT_EQ(save(folder / "secret"), 0);
    fs::permissions(folder / "secret", perms{0});
    fs::permissions(house, perms{0444});
    const std::tuple<const char*, int, int> cases[] = {{"huge", 7, 0},
                                                       {"secret", 70, 70},
                                                       {"house.xml", 0, 70},
                                                       {"house.xml/house.xml", 76, 76},
                                                       {"shared/house.xml", 0, 70},
                                                       {"shared/new.xml", 53, 70},
                                                       {"missing/house.xml", 76, 76},
                                                       {"", 75, 75},
                                                       {"round", 75, 75},
                                                       {"pipe", 75, 75}};
    for (const auto& [name, ofReading, ofSaving] : cases) {
        EXPECT_EQ(read(folder / name, bob, bob), ofReading) << name;
        EXPECT_EQ(save(folder / name, bob, bob), ofSaving) << name;
    }
    for (const auto& [chosen, error, number] :
         {std::tuple(1, EIO, 75), {2, EIO, 75}, {3, EIO, 75}, {3, EINTR, 0}}) {
        steps = {chosen, error, 0};
        EXPECT_EQ(outcome([&] { disk->read(house); }), number) << chosen;
        steps = {};
    }
    EXPECT_EQ(outcome([&] { disk->createFolders(folder / "shared/more"); }, bob, bob), 70);
    fs::permissions(folder / "shared", perms::all);  // so that it can be removed
}

/// The temporary file of another process, while it saves and after it was killed. Process numbers
/// do not identify it, as each container has its own.
TEST_F(SystemDiskTest, RemovesOnlyTheTemporaryFilesOfDeadProcesses) {
    disk->replace(house, [&](const Write& write) {
        write("half");
        EXPECT_EQ(save(house), 0);  // by another process
        EXPECT_EQ(countIn(folder), 2) << "of a living process";
    });
    const auto die = [](const Write& /*write*/) { ::kill(::getpid(), SIGKILL); };
    EXPECT_EQ(outcome([&] { disk->replace(house, die); }), killed);
    EXPECT_EQ(countIn(folder), 2);
    EXPECT_EQ(save(house), 0);
    EXPECT_EQ(countIn(folder), 1) << "of a dead process";
}

TEST_F(SystemDiskTest, KeepsTheOldFileIfTheWriteIsAbortedOrTheDiskIsFull) {
    EXPECT_THROW(disk->replace(house, std::function<void(const Write&)>()), std::bad_function_call);
    const auto saveTooMuch = [&] {
        const rlimit little{4096, 4096};
        if (::setrlimit(RLIMIT_FSIZE, &little) == 0) disk->replace(house, std::string(9999, 'x'));
    };
    EXPECT_EQ(outcome(saveTooMuch), 61);
    EXPECT_EQ(disk->read(house), "old");
    EXPECT_EQ(countIn(folder), 1);
}

TEST_F(SystemDiskTest, LeavesTheOldOrTheNewFileAfterAnyFault) {
    const std::pair<int, int> faults[] = {{EIO, 75},   {ENOSPC, 61},  {EPERM, 70},
                                          {EINTR, 75}, {ENOTSUP, 75}, {0, killed}};
    int most = 0;
    for (const auto& [error, number] : faults) {
        int refused = 0, got = 0;
        for (int chosen = 1; got != past; ++chosen) {
            SCOPED_TRACE("step " + std::to_string(chosen) + ", " + std::to_string(error));
            fs::remove(house);
            disk->replace(house, "old");
            fs::permissions(house, perms{0640});
            EXPECT_TRUE(::geteuid() != 0 || ::chown(house.c_str(), alice, team) == 0);
            if (error != ENOSPC && error != ENOTSUP) setAccessList(house, bob);  // and permissions
            const auto rights = rightsOf(house);
            got = outcome([&, fault = error] {
                steps = {chosen, fault, 0};
                disk->replace(house, "new");
                if (steps.made < chosen) ::_exit(past);
            });
            const std::string now = disk->read(house);
            const bool isOld = now == "old";
            EXPECT_TRUE(isOld || now == "new") << now;
            EXPECT_TRUE(isOld ? got == number : got == 0 || got == killed || got == past) << got;
            EXPECT_EQ(rightsOf(house), rights);
            refused += isOld ? 1 : 0;
            for (const auto& file : fs::directory_iterator(folder)) {
                EXPECT_TRUE(file == house || file.path().filename().native().starts_with(".new-"));
                EXPECT_EQ(file.status().permissions() & perms::others_all, perms::none);
            }
            if (got == killed) disk->replace(house, "next");
            EXPECT_EQ(countIn(folder), 1) << "the next save removes the temporary file";
        }
        EXPECT_GE(refused, 7) << "too few steps";
        most = std::max(most, refused);
        // Writing goes on after an interruption, or without access lists.
        EXPECT_TRUE((error != EINTR && error != ENOTSUP) || refused < most) << error << refused;
    }
}

TEST_F(SystemDiskTest, KeepsTheAccessRightsOfASharedFile) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can act for several users";
    const auto give = [&](gid_t group, unsigned mode) {
        fs::remove(house);
        EXPECT_EQ(save(house) + ::chown(house.c_str(), alice, group), 0);
        fs::permissions(house, perms{mode});
    };
    give(team, 06660);
    EXPECT_EQ(save(house), 0);
    EXPECT_EQ(fs::status(house).permissions(), perms{06660}) << "root keeps everything";
    EXPECT_EQ(save(house, bob, team) + save(house, alice, team) + save(house, bob, team), 0);
    EXPECT_EQ(read(house, alice, team) + read(house, bob, team) + read(house, carol, team), 0);
    EXPECT_EQ(read(house, carol, carol), 70);
    EXPECT_EQ(fs::status(house).permissions(), perms{0660}) << "without the set-id bits";
    give(team, 0646);
    EXPECT_EQ(save(house, bob, bob), 70) << "team could not read it";
    give(team, 0666);
    EXPECT_EQ(save(house, bob, bob), 0);

    give(alice, 0600);
    if (!setAccessList(house, bob)) GTEST_SKIP() << "no access lists here";
    ::setxattr(house.c_str(), "user.note", "n", 1, 0);
    ::setxattr(house.c_str(), "user.mark", "", 0, 0);
    EXPECT_EQ(save(house, alice, alice) + read(house, bob, bob), 0);
    EXPECT_EQ(read(house, carol, alice), 70) << "the list grants the group nothing";
    EXPECT_EQ(::getxattr(house.c_str(), "user.note", nullptr, 0), 1);
    EXPECT_EQ(::getxattr(house.c_str(), "user.mark", nullptr, 0), 0);
    give(alice, 0660);
    setAccessList(folder, carol, "system.posix_acl_default");
    ::setxattr(house.c_str(), "security.note", "n", 1, 0);
    EXPECT_EQ(save(house, 0, 0), 0);
    EXPECT_LT(::getxattr(house.c_str(), "security.note", nullptr, 0), 0) << "not of a user";
    EXPECT_EQ(read(house, carol, carol), 70) << "the folder's list is for new files";
    setAccessList(house, bob);
    EXPECT_EQ(save(house, 0, 0) + read(house, bob, bob), 0) << "instead of the folder's list";
}

TEST_F(SystemDiskTest, WritesARecordedPathAsOneLine) {
    const auto registry = systemRegistry(*disk, folder / ".config");
    for (const char* path :
         {"/a/house.xml", "/a/b\u00FCro = 2.xml", "/a/two\nConfigFile=lines.xml"})
        registry->SetRegValue(RegistryRoot::localMachine, R"(Software\Maker\Product)", "ConfigFile",
                              path);
    EXPECT_EQ(disk->read(folder / ".config/Maker/Product.conf"),
              "ConfigFile=/a/b\u00FCro = 2.xml\n");
}

}  // namespace
