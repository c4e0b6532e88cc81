#include "base/RunTimeError.h"

#include <utility>

namespace {

const char* descriptionOf(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::invalidCall: return "Invalid procedure call or argument";
        case ErrorNumber::overflow: return "Overflow";
        case ErrorNumber::outOfMemory: return "Out of memory";
        case ErrorNumber::subscriptOutOfRange: return "Subscript out of range";
        case ErrorNumber::typeMismatch: return "Type mismatch";
        case ErrorNumber::internalError: return "Internal error";
        case ErrorNumber::fileNotFound: return "File not found";
        case ErrorNumber::diskFull: return "Disk full";
        case ErrorNumber::permissionDenied: return "Permission denied";
        case ErrorNumber::pathFileAccessError: return "Path/File access error";
        case ErrorNumber::pathNotFound: return "Path not found";
        case ErrorNumber::objectNotSet: return "Object variable or With block variable not set";
        case ErrorNumber::invalidUseOfNull: return "Invalid use of Null";
        case ErrorNumber::invalidFileFormat: return "Invalid file format";
        case ErrorNumber::keyTaken:
            return "This key is already associated with an element of this collection";
        case ErrorNumber::cancelled: return "Cancel was selected.";
        case ErrorNumber::elementNotFound: return "Element not found";
        case ErrorNumber::keyNotUnique: return "Key is not unique in collection";
    }
    return "Internal error";
}

}  // namespace

RunTimeError::RunTimeError(ErrorNumber number) : RunTimeError(number, descriptionOf(number)) {}

RunTimeError::RunTimeError(ErrorNumber number, std::string description)
    : number_(number), description_(std::move(description)) {}
