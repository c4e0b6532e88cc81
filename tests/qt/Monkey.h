// A monkey test of the editor's real windows.
#pragma once

/// Sends MONKEY_EVENTS random events (20,000 if not set), always the same for one MONKEY_SEED (3 if
/// not set), and works on copies of the samples. Fails the running test at the first warning of Qt,
/// unexpected error, dialog that cannot be closed, or difference between tree, records and windows.
/// Qt Test ends a test that hangs after QTEST_FUNCTION_TIMEOUT milliseconds. The interaction log is
/// monkey.log in the working directory, also after a crash.
void runMonkeyTest();
