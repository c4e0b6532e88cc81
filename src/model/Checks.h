// Checks of what the user enters.
#pragma once

#include <string_view>

#include "base/Reporting.h"
#include "model/ConfigTree.h"

/// The message for a name that a sibling of the same kind already has.
inline constexpr std::string_view nameTaken = "Name already existing. Please use a different name";

/// True when a node of that kind may have that name below `node` or, with `useParent`, below the
/// parent of `node`. Only children of the same kind are compared, with exact case. Otherwise shows
/// a message and returns false.
bool CheckDuplNames(NodeKind kind, std::string_view name, const Node& node, bool useParent,
                    const ShowMessage& showMessage);

/// True when the text contains none of the characters blank . , : ; \ / | which are not allowed in
/// names, as names become parts of keys and of XML element names. Otherwise shows a message with
/// the first one found, in that order, and returns false.
bool CheckChars(std::string_view text, const ShowMessage& showMessage);

/// Return the message for an invalid text in a field of a dialog; empty for a valid text.
/// Deliberate: all parts of a group address have one range, which for the first two is wider than
/// on the bus.
std::string_view faultOfItemName(std::string_view name);
std::string_view faultOfAddressPart(std::string_view part);
std::string_view faultOfElements(std::string_view count);
std::string_view faultOfDeviceName(std::string_view name);
std::string_view faultOfTimeout(std::string_view milliseconds);
