#include "base/Reporting.h"

#include <exception>
#include <new>

#include "base/RunTimeError.h"

namespace {

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

}  // namespace

std::string describeCaughtError() {
    const RunTimeError error = caughtError();
    return std::to_string(static_cast<int>(error.number())) + "  " + error.description();
}
