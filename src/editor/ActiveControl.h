// Where commands on a selection act.
#pragma once

#include <cstdint>
#include <functional>

class Node;

/// The view that commands on a selection act on: the one that has the focus, also while a menu or
/// another window of the editor is in use.
enum class ActiveControl : std::uint8_t { none, tree, list };

/// Shows a node as a click on it does.
using ClickNode = std::function<void(Node&)>;
