// Gives pending events their turn in long work.
#pragma once

#include <chrono>
#include <functional>

#include "base/RunTimeError.h"
#include "desktop/Desktop.h"

/// Called once for every piece of the work; lets the windows repaint when time has passed, not
/// after a number of pieces, so that the work takes no longer for it.
class EventTurns {
 public:
    /// `goesOn` is asked after each turn.
    EventTurns(Desktop& desktop, const std::function<bool()>& goesOn)
        : desktop_(desktop), goesOn_(goesOn) {}

    /// Raises ErrorNumber::cancelled when the work is not to go on.
    void pieceDone() {
        constexpr int piecesBetweenLooksAtTheClock = 64;
        if (++pieces_ % piecesBetweenLooksAtTheClock != 0) return;
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
