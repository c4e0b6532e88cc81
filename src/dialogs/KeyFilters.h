// Filters of typed characters. They govern typing only: pasted and proposed texts pass.
#pragma once

/// The filter of names: the code of a typed character that may pass ("-", "_", digits, ASCII
/// letters, Backspace), else 0.
int filterNameKey(int code);

/// The key filter of numeric fields: the code of a typed character that may pass, else 0.
int FilterNumericKey(int code);
