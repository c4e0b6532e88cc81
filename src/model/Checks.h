// The checks of names that a user enters.
#pragma once

#include <string_view>

#include "base/Reporting.h"
#include "model/ConfigTree.h"

/// True when a node of that kind may get that name below `node` or, with
/// `useParent`, beside it. Only siblings of the same kind count, with exact case. False after
/// telling the user.
bool CheckDuplNames(NodeKind kind, std::string_view name, const Node& node, bool useParent,
                    const Tell& tell);

/// True when the text holds none of the characters that names must not have, as they become
/// parts of keys and names of XML elements: blank . , : ; \ / |
/// False after telling the user of the first kind found, in that order.
bool CheckChars(std::string_view text, const Tell& tell);
