// A user who does anything whatever with the editor's real windows.
#pragma once

/// Plays MONKEY_EVENTS random events (without it `events`), the same every time for a MONKEY_SEED,
/// over files of its own. Fails the running test at the first warning of the toolkit, unexpected
/// error, dialog that cannot be left or disagreement of tree, records and windows. An editor that
/// hangs is ended by the test library, after QTEST_FUNCTION_TIMEOUT milliseconds. What was done
/// stands in monkey.log where the test runs, also after a crash.
void playMonkey(int events);
