// Filters of typed characters. They apply to typing only, not to pasted and proposed texts.
#pragma once

/// The filter for names. Returns the code of an allowed character ("-", "_", digits, ASCII letters,
/// Backspace), else 0.
int filterNameKey(int code);

/// The filter for numeric fields. Returns the code of an allowed character (digits, "-", ".",
/// blank, Backspace, tab, line ends), else 0.
int FilterNumericKey(int code);
