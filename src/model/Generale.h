// Changes that keep tree and registries in step.
#pragma once

#include "model/Keys.h"

class Document;

/// The tree's selected node. Raises ErrorNumber::objectNotSet when there is none.
Node& selectedNode(Document& document);

/// Raises what adding a record of that kind, and then its node, would end with when the key is
/// taken: ErrorNumber::keyTaken by a record, ErrorNumber::keyNotUnique by a node.
void requireFreeKey(const Document& document, NodeKind kind, const SharedText& key);

/// The same for a second node like `node`, which has a record unless it is a dropped device.
void requireFreeKey(const Document& document, const Node& node, const SharedText& key);

/// The same for a node that is to get another key, and everything below it with it: found out
/// before anything is changed, so that nothing is lost on the way.
void requireFreeKeys(const Document& document, const Node& node, const SharedText& newKey);

/// After `node` has got another key: makes the keys of all below it follow, in the tree and in the
/// registries, where the records move to the end. Raises ErrorNumber::invalidCall for a branch or
/// an item without a record.
void UpdateChildKeys(Document& document, const Node& node);

/// Removes the node and everything below it, with their registry entries.
void RemoveSubtree(Document& document, Node& node);
