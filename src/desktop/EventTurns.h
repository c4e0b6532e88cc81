// Gives pending events their turn in long work.
#pragma once

#include <chrono>

#include "desktop/Desktop.h"

/// Called once for every piece of the work; lets the windows repaint when time has passed, not
/// after a number of pieces, so that the work takes no longer for it.
class EventTurns {
 public:
    explicit EventTurns(Desktop& desktop) : desktop_(desktop) {}

    void pieceDone() {
        constexpr int piecesBetweenLooksAtTheClock = 64;
        if (++pieces_ % piecesBetweenLooksAtTheClock != 0) return;
        const auto now = Clock::now();
        if (now - lastTurn_ < std::chrono::milliseconds(50)) return;
        desktop_.processPendingEvents();
        lastTurn_ = Clock::now();
    }

 private:
    using Clock = std::chrono::steady_clock;

    Desktop& desktop_;
    Clock::time_point lastTurn_ = Clock::now();
    unsigned pieces_ = 0;
};
