// The names that the dialogs propose for new nodes. A number follows each.
#pragma once

#include <string_view>

#include "model/ConfigTree.h"

inline constexpr std::string_view proposedDeviceName = "New Device ";
inline constexpr std::string_view proposedBranchName = "NewBranch";
inline constexpr std::string_view proposedItemName = "New Item ";
/// For every item except the first when several are added in one dialog.
inline constexpr std::string_view proposedNextItemName = "New_Item_";

/// True for a proposed name with its number. Case is ignored: names of branches are read back in
/// upper case.
bool isProposedName(NodeKind kind, std::string_view name);
