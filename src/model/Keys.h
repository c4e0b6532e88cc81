// How the keys of nodes are made.
#pragma once

#include <string_view>

#include "base/SharedText.h"
#include "model/ConfigTree.h"

/// A node's key: its parent's key, ".", and its name. Plain concatenation, no escaping.
SharedText joinKey(std::string_view parentKey, std::string_view name);

/// The key cut before its last "."; empty when it holds none ("Plant.Floor1" of
/// "Plant.Floor1.Light3").
std::string_view parentKeyOf(std::string_view key);

/// The key that a node of that name has below `node`, or, with `useParent`, beside it. Raises
/// ErrorNumber::objectNotSet when there is no such node.
SharedText BuildNodeKey(std::string_view name, const Node* node, bool useParent);
