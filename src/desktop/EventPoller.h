// Processes pending events during long work.
#pragma once

#include <chrono>
#include <functional>

#include "base/RunTimeError.h"
#include "desktop/Desktop.h"

/// Lets the windows repaint about every 50 milliseconds during long work. It measures time, not
/// the number of pieces, so that repainting does not slow the work down:
///
///     EventPoller events(desktop, goesOn);
///     for (const Piece& piece : work) { handle(piece); events.poll(); }
class EventPoller {
 public:
    /// `goesOn` is called after each repainting; it returns false to cancel the work.
    EventPoller(Desktop& desktop, const std::function<bool()>& goesOn)
        : desktop_(desktop), goesOn_(goesOn) {}

    /// To be called after each piece of the work. Raises ErrorNumber::cancelled when `goesOn`
    /// returned false.
    void poll() {
        constexpr int piecesPerClockCheck = 64;
        if (++pieces_ % piecesPerClockCheck != 0) return;
        const auto now = Clock::now();
        if (now - lastTurn_ < std::chrono::milliseconds(50)) return;
        desktop_.processPendingEvents();
        if (!goesOn_()) throw RunTimeError(ErrorNumber::cancelled);
        lastTurn_ = Clock::now();
    }

 private:
    using Clock = std::chrono::steady_clock;

    Desktop& desktop_;
    const std::function<bool()>& goesOn_;
    Clock::time_point lastTurn_ = Clock::now();
    unsigned pieces_ = 0;
};
