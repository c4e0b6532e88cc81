// Texts of what is to be seen, compared with those that a person has approved.
#pragma once

#include <QWidget>
#include <functional>

/// Compares with approved/NAME.txt beside the tests: title, and role, name, text, description,
/// tooltip, key, state and place in the tab order of every control in sight, a line each. A
/// difference fails the running test. With APPROVE set, writes the file anew: read the difference
/// before it is committed.
void approve(const QString& name, QWidget& window);

/// A text that a test wrote itself, in the same way.
void approve(const QString& name, const QString& text);

/// The tooltip at a spot of a widget, as plain text.
QString tooltipAt(QWidget& widget, QPoint spot);

/// Does something in the dialog that is opened by `open`, once it is active.
void inDialog(const std::function<void()>& open, const std::function<void(QWidget&)>& act);
