// Builds and splits the keys of nodes.
#pragma once

#include <string_view>

#include "base/SharedText.h"
#include "model/ConfigTree.h"

/// Returns the parent's key, "." and the name, concatenated without escaping.
SharedText joinKey(std::string_view parentKey, std::string_view name);

/// Returns the part of the key before its last ".": "Plant.Floor1" of "Plant.Floor1.Light3"; empty
/// when the key has no ".".
std::string_view parentKeyOf(std::string_view key);

/// Returns the key for a node with that name below `node` or, with `useParent`, below the parent of
/// `node`. Raises ErrorNumber::objectNotSet when `node`, or its parent, is null.
SharedText BuildNodeKey(std::string_view name, const Node* node, bool useParent);
