// The checks of what a user enters.
#pragma once

#include <string_view>

#include "base/Reporting.h"
#include "model/ConfigTree.h"

/// What a name is refused with that a node of the same kind has beside it.
inline constexpr std::string_view nameTaken = "Name already existing. Please use a different name";

/// True when a node of that kind may get that name below `node` or, with
/// `useParent`, beside it. Only siblings of the same kind count, with exact case. False after
/// telling the user.
bool CheckDuplNames(NodeKind kind, std::string_view name, const Node& node, bool useParent,
                    const Tell& tell);

/// True when the text holds none of the characters that names must not have, as they become
/// parts of keys and names of XML elements: blank . , : ; \ / |
/// False after telling the user of the first kind found, in that order.
bool CheckChars(std::string_view text, const Tell& tell);

/// Why the dialogs refuse what was typed into a field; empty for what they take. The parts of a
/// group address share one range, wider than the bus has for the first two.
std::string_view faultOfItemName(std::string_view name);
std::string_view faultOfAddressPart(std::string_view part);
std::string_view faultOfElements(std::string_view count);
std::string_view faultOfDeviceName(std::string_view name);
std::string_view faultOfTimeout(std::string_view milliseconds);
