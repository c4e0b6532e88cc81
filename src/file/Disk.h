// Access to files: whole files are read and replaced.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Identifies one state of a file. Two equal stamps mean that nobody changed the file in between.
struct FileStamp {
    std::uint64_t size = 0;    ///< bytes
    std::int64_t time = 0;     ///< of the last change of its bytes, in the unit of the system
    std::uint64_t number = 0;  ///< of the file on its disk; changes when the file is replaced
    /// Time of the last change of the bytes or of the properties, which no program can set back.
    /// 0 where the system does not know it.
    std::int64_t statusTime = 0;
    bool operator==(const FileStamp&) const = default;
};

/// The largest file that can be read, in bytes: just less than 2 GiB.
constexpr std::uint64_t maxBytesRead = 0x7FFFFFFF;

/// A file that is open for reading, at its first byte.
struct InputFile {
    std::uint64_t size;  ///< bytes at the time of opening
    /// Copies the next bytes to `to` and returns their number. It is less than `bytes` only at the
    /// end of the file.
    std::function<std::size_t(char* to, std::size_t bytes)> read;
};

/// Appends bytes to a file.
using Write = std::function<void(std::string_view bytes)>;

/// Reads and replaces whole files. Paths are UTF-8. It is an interface so that a test can simulate
/// any fault of a disk.
///
///     const auto disk = systemDisk();
///     const std::string bytes = disk->read("/home/ann/house.xml");
///     disk->replace("/home/ann/copy.xml", bytes);
///
/// Functions raise RunTimeError with one of these numbers: fileNotFound, pathNotFound,
/// permissionDenied, diskFull, and pathFileAccessError for all other faults (a folder instead of a
/// file, a failing drive).
class Disk {
 public:
    virtual ~Disk() = default;

    /// True if a file, a folder or anything else exists at the path. Raises nothing.
    virtual bool exists(const std::string& path) = 0;

    /// The stamp of the file, or nothing if there is none. Raises nothing.
    virtual std::optional<FileStamp> stampOf(const std::string& path) = 0;

    /// Opens a file for reading. Also raises outOfMemory for a file of 2 GiB or more.
    virtual InputFile openToRead(const std::string& path) = 0;

    /// Reads the whole file in pieces; most files are one piece. For each piece, `room` returns a
    /// buffer of that many bytes, and `take` is then called with the number of bytes read, which
    /// is smaller than the buffer only for the last piece. `meanwhile` is called at least every
    /// 64 KiB, as a slow disk takes long for a piece.
    void readPieces(
        const std::string& path, const std::function<char*(std::size_t bytes)>& room,
        const std::function<void(std::size_t bytes, bool isLast)>& take,
        const std::function<void()>& meanwhile = [] {}) {
        constexpr std::uint64_t least = 64UL * 1024;
        constexpr std::uint64_t most = 512UL * 1024 * 1024;
        const InputFile file = openToRead(path);
        std::uint64_t remaining =
            file.size + 1;  // one more: to find the end even of a file that grew
        for (bool ended = false; !ended;) {
            const auto piece = static_cast<std::size_t>(std::clamp(remaining, least, most));
            char* const to = room(piece);
            std::size_t got = 0;
            while (!ended && got < piece) {
                const std::size_t asked = std::min<std::size_t>(piece - got, least);
                const std::size_t came = file.read(to + got, asked);
                ended = came < asked;
                got += came;
                meanwhile();
            }
            remaining -= std::min<std::uint64_t>(remaining, got);
            take(got, ended);
        }
    }

    /// Returns all bytes of the file.
    std::string read(const std::string& path) {
        std::string bytes;
        std::size_t end = 0;
        readPieces(
            path,
            [&](std::size_t room) {
                bytes.resize(end + room);
                return bytes.data() + end;
            },
            [&](std::size_t got, bool /*isLast*/) { bytes.resize(end += got); });
        return bytes;
    }

    /// Replaces the file at the path, or creates it. `contents` is called once and writes the new
    /// bytes. Either all of it succeeds and the bytes are on the disk, or an error is raised, by
    /// `contents` or by the disk, and the old file is unchanged: the bytes go to a temporary file
    /// in the same folder, which is renamed at the end.
    ///
    /// A symbolic link is followed. An existing file keeps its access rights. Its owner changes to
    /// the current user where the system does not allow anything else. A file without write
    /// permission is refused, and so is one whose group or access list cannot be kept.
    virtual void replace(const std::string& path,
                         const std::function<void(const Write& write)>& contents) = 0;

    /// Replaces the file with these bytes, in the same way.
    void replace(const std::string& path, std::string_view bytes) {
        replace(path, [&](const Write& write) { write(bytes); });
    }

    /// Creates the folder and all missing folders above it.
    virtual void createFolders(const std::string& path) = 0;
};

/// The disk of this machine.
std::unique_ptr<Disk> systemDisk();
