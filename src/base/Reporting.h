// How rules show messages to the user, and how handlers report the errors that they trap.
#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "base/RunTimeError.h"

/// A function that shows a text to the user in a message box with an OK button. Any object with
/// `showMessage(text)` converts to it, so that a rule does not depend on the desktop interface:
///
///     if (!CheckChars(name, desktop)) return;
class ShowMessage {
 public:
    template <typename MessageBoxes>
    requires(!std::same_as<MessageBoxes, ShowMessage>) && requires(MessageBoxes& boxes) {
        boxes.showMessage(std::string());
    }
    // Implicit, so that every caller can pass its desktop.
    // NOLINTNEXTLINE(google-explicit-constructor)
    ShowMessage(MessageBoxes& boxes)
        : show_([&boxes](const std::string& text) { boxes.showMessage(text); }) {}

    void operator()(const std::string& text) const { show_(text); }

 private:
    std::function<void(const std::string&)> show_;
};

/// Returns the exception that is being handled as a RunTimeError. Converts every type of exception:
/// one that left a handler would end the program, and the user would lose unsaved work.
RunTimeError caughtError();

/// Runs a part of a handler's body that is a routine of its own. An error that `body` raises gets
/// the routine's name, unless it already has one, and is reported under that name.
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

/// Number and description of the error: "6  Overflow".
std::string numberAndDescription(const RunTimeError& error);

/// Runs a handler's body. An error ends the body and is shown as the general error message,
/// " Error n. 6  Overflow in mnuSaveCfg_Click" for the routine mnuSaveCfg_Click, or with the name
/// of the routine that the error has itself. What the body changed before the error stays changed.
/// Returns true when the body ran to its end.
template <typename Body>
bool reportErrors(const ShowMessage& showMessage, std::string_view routine, Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        const RunTimeError error = caughtError();
        const std::string_view where = error.routine().empty() ? routine : error.routine();
        showMessage(" Error n. " + numberAndDescription(error) + " in " + std::string(where));
        return false;
    }
}

/// The same for the file choosers, whose message is "ShowDialSave Error n. 75  Path/File access
/// error" for the routine ShowDialSave.
template <typename Body>
bool reportChooserErrors(const ShowMessage& showMessage, std::string_view routine, Body&& body) {
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        showMessage(std::string(routine) + " Error n. " + numberAndDescription(caughtError()));
        return false;
    }
}
