// What a window tells an assistive tool, compared with a text that a person has approved.
#pragma once

#include <QWidget>

/// Compares with approved/NAME.txt beside the tests: title, and role, name, text, description,
/// tooltip, key, state and place in the tab order of every control in sight, a line each. A
/// difference fails the running test. With APPROVE set, writes the file anew: read the difference
/// before it is committed.
void approve(const QString& name, QWidget& window);
