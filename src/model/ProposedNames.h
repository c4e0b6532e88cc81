// The names that the dialogs propose for what is added, each followed by a number.
#pragma once

#include <string_view>

#include "model/ConfigTree.h"

inline constexpr std::string_view proposedDeviceName = "New Device ";
inline constexpr std::string_view proposedBranchName = "NewBranch";
inline constexpr std::string_view proposedItemName = "New Item ";
/// For every item but the first of those that are added one after the other.
inline constexpr std::string_view proposedNextItemName = "New_Item_";

/// True for a name that was proposed and never changed, in letters of either case: those of
/// branches are read back in capitals.
bool isProposedName(NodeKind kind, std::string_view name);
