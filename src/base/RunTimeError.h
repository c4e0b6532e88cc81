// The errors that the editor reports by number.
#pragma once

#include <exception>
#include <string>
#include <utility>

/// The numbers under which faults are known to users and to the people who support them.
/// They are the run-time and common-control error numbers of the Windows tools in which such
/// configurations have always been edited.
enum class ErrorNumber : int {
    invalidCall = 5,          ///< a registry has no such key; a length is negative
    overflow = 6,             ///< a number does not fit its 16 or 32 bits
    outOfMemory = 7,          ///< the system has no more memory to give
    subscriptOutOfRange = 9,  ///< a record has too few fields
    typeMismatch = 13,        ///< a text cannot be read as the value asked for
    internalError = 51,       ///< a fault that none of the others names
    fileNotFound = 53,        ///< the file system says so, as in the next four
    diskFull = 61,
    permissionDenied = 70,
    pathFileAccessError = 75,
    pathNotFound = 76,
    objectNotSet = 91,        ///< there is no selected node
    invalidUseOfNull = 94,    ///< an attribute or child element is missing
    invalidFileFormat = 321,  ///< a file is not XML; the description gives line and reason
    keyTaken = 457,           ///< a registry key is taken
    cancelled = 32755,        ///< a chooser was cancelled
    elementNotFound = 35601,  ///< a tree or list key is unknown
    keyNotUnique = 35602,     ///< a tree or list key is taken
};

/// A fault that ends the routine in which it arises and is reported to the user by the handler
/// that called it (see reportErrors). Thrown where the fault is found.
class RunTimeError : public std::exception {
 public:
    /// With the number's own description, e.g. "Overflow".
    explicit RunTimeError(ErrorNumber number);
    /// With a description that says more than the number's own.
    RunTimeError(ErrorNumber number, std::string description);

    ErrorNumber number() const { return number_; }
    const std::string& description() const { return description_; }
    /// The routine that it is reported under; empty for that of the handler which traps it.
    const std::string& routine() const { return routine_; }
    void setRoutine(std::string routine) { routine_ = std::move(routine); }
    const char* what() const noexcept override { return description_.c_str(); }

 private:
    ErrorNumber number_;
    std::string description_;
    std::string routine_;
};
