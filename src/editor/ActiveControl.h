// Names the view whose selection the commands use.
#pragma once

#include <cstdint>
#include <functional>

class Node;

/// The view whose selection the commands use: the last of the two views that had the focus. It
/// stays the same while a menu or another window of the editor has the focus.
enum class ActiveControl : std::uint8_t { none, tree, list };

/// Shows a node in the same way as a click on it.
using ClickNode = std::function<void(Node&)>;
