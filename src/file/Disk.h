// The file system as the editor needs it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// What tells whether a file is still the one that was read or written.
struct FileStamp {
    std::uint64_t size = 0;    ///< bytes
    std::int64_t time = 0;     ///< of the last change, in the unit of the system
    std::uint64_t number = 0;  ///< of the file on its disk; another one once it was replaced
    /// Of the last change of anything about it, which no program can set back; 0 where the system
    /// does not tell.
    std::int64_t statusTime = 0;
    bool operator==(const FileStamp&) const = default;
};

/// The most bytes that a file to be read may have: just less than 2 GiB.
constexpr std::uint64_t mostBytesRead = 0x7FFFFFFF;

/// A file that is open for reading, from its first byte on.
struct InputFile {
    std::uint64_t size;  ///< bytes, when it was opened
    /// Puts the next bytes there; gives their number: fewer than asked for at the end only.
    std::function<std::size_t(char* to, std::size_t bytes)> read;
};

/// Writes bytes to a file, after those that were written before.
using Write = std::function<void(std::string_view bytes)>;

/// Whole files, read and replaced. Paths are UTF-8. An interface, so that a test can play any
/// fault of a disk.
///
/// Functions raise the numbers by which file systems' faults are reported: fileNotFound,
/// pathNotFound, permissionDenied, diskFull, and pathFileAccessError for the rest (a folder in
/// place of a file, a failing drive).
class Disk {
 public:
    virtual ~Disk() = default;

    /// True when there is a file, or anything else, at the path. Raises nothing.
    virtual bool exists(const std::string& path) = 0;

    /// Nothing where there is no file. Raises nothing.
    virtual std::optional<FileStamp> stampOf(const std::string& path) = 0;

    /// Raises outOfMemory for a file of 2 GiB or more.
    virtual InputFile openToRead(const std::string& path) = 0;

    /// Reads the file, a piece after the other and most often in one: `room` makes room for a
    /// piece, and `take` hears how many bytes came, fewer than were asked for with the last piece
    /// only. `meanwhile` is called again and again while a piece comes, which takes long from a
    /// slow disk.
    void readPieces(
        const std::string& path, const std::function<char*(std::size_t bytes)>& room,
        const std::function<void(std::size_t bytes, bool isLast)>& take,
        const std::function<void()>& meanwhile = [] {}) {
        constexpr std::uint64_t least = 64UL * 1024;
        constexpr std::uint64_t most = 512UL * 1024 * 1024;
        const InputFile file = openToRead(path);
        std::uint64_t left = file.size + 1;  // the end is met, though the file may have grown
        for (bool ended = false; !ended;) {
            const auto piece = static_cast<std::size_t>(std::clamp(left, least, most));
            char* const to = room(piece);
            std::size_t got = 0;
            while (!ended && got < piece) {
                const std::size_t asked = std::min<std::size_t>(piece - got, least);
                const std::size_t came = file.read(to + got, asked);
                ended = came < asked;
                got += came;
                meanwhile();
            }
            left -= std::min<std::uint64_t>(left, got);
            take(got, ended);
        }
    }

    /// The bytes of the file.
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

    /// Puts a file of the bytes that `contents` writes, a piece after the other, in the place of
    /// the one at the path, or makes a new one. Either all of it happens, and the bytes are on the
    /// disk, or an error is raised, by `contents` or the disk, and the old file is as it was: the
    /// bytes go to a file beside it, which takes its place in one step. A
    /// symbolic link is followed. Who may read and write an existing file stays as it was, only
    /// its owner becomes who replaced it where the system lets nobody give files away; a file
    /// that may not be written is refused, and one whose group or access list cannot be kept.
    virtual void replace(const std::string& path,
                         const std::function<void(const Write& write)>& contents) = 0;

    /// The same for bytes that are at hand.
    void replace(const std::string& path, std::string_view bytes) {
        replace(path, [&](const Write& write) { write(bytes); });
    }

    /// Makes the folder and those above it, where they are missing.
    virtual void createFolders(const std::string& path) = 0;
};

/// The machine's own.
std::unique_ptr<Disk> systemDisk();
