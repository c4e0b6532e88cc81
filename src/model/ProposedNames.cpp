#include "model/ProposedNames.h"

#include "base/Text.h"

bool isProposedName(NodeKind kind, std::string_view name) {
    const auto isOf = [&](std::string_view proposed) {
        return name.size() > proposed.size() &&
               equalIgnoringCase(name.substr(0, proposed.size()), proposed) &&
               name.find_first_not_of("0123456789", proposed.size()) == std::string_view::npos;
    };
    switch (kind) {
        case NodeKind::config: return false;
        case NodeKind::plc: return isOf(proposedDeviceName);
        case NodeKind::branch: return isOf(proposedBranchName);
        case NodeKind::item: return isOf(proposedItemName) || isOf(proposedNextItemName);
    }
    return false;
}
