// The file system as the editor needs it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

/// Whole files, read and replaced. Paths are UTF-8. An interface, so that a test can play any
/// fault of a disk.
///
/// All functions raise the numbers by which file systems' faults are reported: fileNotFound,
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

    /// Raises the error with which read() would begin.
    virtual void requireReadable(const std::string& path) = 0;

    /// The bytes of the file.
    virtual std::string read(const std::string& path) = 0;

    /// Puts a file of these bytes in the place of the one at the path, or makes a new one. Either
    /// all of it happens, and the bytes are on the disk, or an error is raised and the old file
    /// is as it was: the bytes go to a file beside it, which takes its place in one step. A
    /// symbolic link is followed; the permissions of an existing file are kept, and one that may
    /// not be written is refused.
    virtual void replace(const std::string& path, std::string_view bytes) = 0;

    /// Makes the folder and those above it, where they are missing.
    virtual void createFolders(const std::string& path) = 0;
};

/// The machine's own.
std::unique_ptr<Disk> systemDisk();
