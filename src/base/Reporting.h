// How rules tell the user something, and how handlers report the errors that they trap.
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "base/RunTimeError.h"

/// Shows one text to the user in a message box with an OK button. Made from anything that has
/// `showMessage(text)`, so that a rule need not know what a desktop is:
///
///     if (!CheckChars(name, desktop)) return;
class Tell {
 public:
    template <typename MessageBoxes>
    requires(!std::same_as<MessageBoxes, Tell>) && requires(MessageBoxes& boxes) {
        boxes.showMessage(std::string());
    }
    // Implicit on purpose: every caller hands over the desktop that it has.
    // NOLINTNEXTLINE(google-explicit-constructor)
    Tell(MessageBoxes& boxes)
        : show_([&boxes](const std::string& text) { boxes.showMessage(text); }) {}

    void operator()(const std::string& text) const { show_(text); }

 private:
    std::function<void(const std::string&)> show_;
};

/// The exception that is being handled. Any exception has a number here: one that escaped a
/// handler would end the program, and with it the user's work.
RunTimeError caughtError();

/// Runs a part of a handler's body that is a routine of its own: an error that leaves it carries
/// the routine's name, and is reported under it.
template <typename Body>
void runRoutine(std::string_view routine, Body&& body) {
    try {
        std::forward<Body>(body)();
    } catch (...) {
        RunTimeError error = caughtError();
        if (error.routine().empty()) error.setRoutine(std::string(routine));
        throw error;
    }
}

/// "6  Overflow".
std::string numberAndDescription(const RunTimeError& error);

/// Runs a handler's body. An error that the body throws ends it and is shown as the general
/// error message, " Error n. 6  Overflow in mnuSaveCfg_Click" for the routine mnuSaveCfg_Click,
/// unless the error carries the name of another; what the body had changed before stays changed.
/// True when the body came to its end.
template <typename Body>
bool reportErrors(const Tell& tell, std::string_view routine, Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        const RunTimeError error = caughtError();
        const std::string_view where = error.routine().empty() ? routine : error.routine();
        tell(" Error n. " + numberAndDescription(error) + " in " + std::string(where));
        return false;
    }
}

/// The same for the file choosers, whose message is "ShowDialSave Error n. 75  Path/File access
/// error" for the routine ShowDialSave.
template <typename Body>
bool reportChooserErrors(const Tell& tell, std::string_view routine, Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        tell(std::string(routine) + " Error n. " + numberAndDescription(caughtError()));
        return false;
    }
}
