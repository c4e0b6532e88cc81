#include "base/Reporting.h"

#include <exception>
#include <new>

RunTimeError caughtError() {
    try {
        throw;
    } catch (const RunTimeError& error) {
        return error;
    } catch (const std::bad_alloc&) {
        return RunTimeError(ErrorNumber::outOfMemory);
    } catch (const std::exception& error) {
        return RunTimeError(ErrorNumber::internalError, error.what());
    } catch (...) {
        return RunTimeError(ErrorNumber::internalError);
    }
}

std::string numberAndDescription(const RunTimeError& error) {
    return std::to_string(static_cast<int>(error.number())) + "  " + error.description();
}
