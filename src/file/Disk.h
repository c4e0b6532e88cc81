// The file system as the editor needs it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// What tells whether a file is still the one that was read or written.
struct FileStamp {
    std::uint64_t size;  ///< bytes
    std::int64_t time;   ///< of the last change, in the unit of the system
    bool operator==(const FileStamp&) const = default;
};

/// The most bytes that a file to be read may have: just less than 2 GiB.
constexpr std::uint64_t mostBytesRead = 0x7FFFFFFF;

/// Whole files, read and replaced. Paths are UTF-8. An interface, so that a test can play any
/// fault of a disk.
///
/// Functions raise the numbers by which file systems' faults are reported: fileNotFound,
/// pathNotFound, permissionDenied, diskFull, and pathFileAccessError for the rest (a folder in
/// place of a file, a failing drive).
class Disk {
 public:
    Disk() = default;
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;
    Disk(Disk&&) = delete;
    Disk& operator=(Disk&&) = delete;
    virtual ~Disk() = default;

    /// True when there is a file, or anything else, at the path. Raises nothing.
    virtual bool exists(const std::string& path) = 0;

    /// Nothing where there is no file. Raises nothing.
    virtual std::optional<FileStamp> stampOf(const std::string& path) = 0;

    /// Raises the error with which reading would begin.
    virtual void requireReadable(const std::string& path) = 0;

    /// Hands over the bytes of the file, a piece after the other, so that a large one need not be
    /// held whole. Raises outOfMemory for one of 2 GiB or more, before anything is read.
    virtual void readPieces(const std::string& path,
                            const std::function<void(std::string_view piece)>& take) = 0;

    /// The bytes of the file.
    std::string read(const std::string& path) {
        std::string bytes;
        readPieces(path, [&](std::string_view piece) { bytes.append(piece); });
        return bytes;
    }

    /// Puts a file of these bytes in the place of the one at the path, or makes a new one. Either
    /// all of it happens, and the bytes are on the disk, or an error is raised and the old file
    /// is as it was: the bytes go to a file beside it, which takes its place in one step. A
    /// symbolic link is followed. Who may read and write an existing file stays as it was, only
    /// its owner becomes who replaced it where the system lets nobody give files away; a file
    /// that may not be written is refused, and one whose group or access list cannot be kept.
    virtual void replace(const std::string& path, std::string_view bytes) = 0;

    /// Makes the folder and those above it, where they are missing.
    virtual void createFolders(const std::string& path) = 0;
};

/// The machine's own.
std::unique_ptr<Disk> systemDisk();
