// The errors that the editor reports by number.
#pragma once

#include <exception>
#include <string>
#include <utility>

/// The error numbers that users and their support know. Source: the run-time and common-control
/// error numbers of the Windows tools in which such configurations have always been edited.
enum class ErrorNumber : int {
    invalidCall = 5,          ///< a registry has no such key; a length is negative
    overflow = 6,             ///< a number does not fit its 16 or 32 bits
    outOfMemory = 7,          ///< the system has no more memory
    subscriptOutOfRange = 9,  ///< a record has too few fields
    typeMismatch = 13,        ///< a text cannot be read as the value asked for
    internalError = 51,       ///< any error that has no other number
    fileNotFound = 53,        ///< reported by the file system, as are the next four
    diskFull = 61,
    permissionDenied = 70,
    pathFileAccessError = 75,
    pathNotFound = 76,
    objectNotSet = 91,        ///< there is no node, e.g. none is selected
    invalidUseOfNull = 94,    ///< an attribute or child element is missing
    invalidFileFormat = 321,  ///< a file is not XML; the description gives line and reason
    keyTaken = 457,           ///< a registry key is taken
    cancelled = 32755,        ///< a chooser was cancelled
    elementNotFound = 35601,  ///< a tree or list key is unknown
    keyNotUnique = 35602,     ///< a tree or list key is taken
};

/// An error with a number. It is thrown where the fault is found, ends the routine, and is reported
/// to the user by the handler that called the routine (see reportErrors):
///
///     throw RunTimeError(ErrorNumber::overflow);
class RunTimeError : public std::exception {
 public:
    /// With the standard description of the number, e.g. "Overflow".
    explicit RunTimeError(ErrorNumber number);
    /// With a description that says more than the standard one.
    RunTimeError(ErrorNumber number, std::string description);

    ErrorNumber number() const { return number_; }
    const std::string& description() const { return description_; }
    /// The name of the routine to report; when empty, the handler that traps the error reports its
    /// own name.
    const std::string& routine() const { return routine_; }
    void setRoutine(std::string routine) { routine_ = std::move(routine); }
    const char* what() const noexcept override { return description_.c_str(); }

 private:
    ErrorNumber number_;
    std::string description_;
    std::string routine_;
};
