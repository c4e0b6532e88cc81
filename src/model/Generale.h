// The rules of names and keys.
#pragma once

#include <string>
#include <string_view>

#include "model/ConfigTree.h"
#include "model/Reporting.h"

class Document;

/// A node's key: its parent's key, ".", and its name. Plain concatenation, no escaping.
SharedText joinKey(std::string_view parentKey, std::string_view name);

/// The key cut before its last "."; empty when it holds none ("Plant.Floor1" of
/// "Plant.Floor1.Light3").
std::string_view parentKeyOf(std::string_view key);

/// The key that a node of that name has below `node`, or, with `useParent`, beside it. Raises
/// ErrorNumber::objectNotSet when there is no such node.
SharedText BuildNodeKey(std::string_view name, const Node* node, bool useParent);

/// That many tab characters: the beginning of a line of a configuration file.
std::string Indent(std::size_t level);

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

/// True when a node of that kind may get that name below the tree's selected node or, with
/// `useParent`, beside it. Only siblings of the same kind count, with exact case. False after
/// telling the user.
bool CheckDuplNames(NodeKind kind, std::string_view name, const ConfigTree& tree, bool useParent,
                    const Tell& tell);

/// True when the text holds none of the characters that names must not have, as they become
/// parts of keys and names of XML elements: blank . , : ; \ / |
/// False after telling the user of the first kind found, in that order.
bool CheckChars(std::string_view text, const Tell& tell);

/// The key filter of numeric fields: the code of a typed character that may pass, else 0.
int FilterNumericKey(int code);

/// The hexadecimal index of a group address: main x 2048 + middle x 256 + sub, upper case,
/// padded on the left with "0" to `width`. "1/2/3" gives "0A03". A part that is missing counts
/// as 0. Raises ErrorNumber::overflow for an index that does not fit 32 bits.
std::string AddressToHex(std::string_view address, std::size_t width);
