#include "model/Checks.h"

#include <algorithm>
#include <string>

#include "base/Numbers.h"
#include "base/RunTimeError.h"
#include "base/Text.h"

bool CheckDuplNames(NodeKind kind, std::string_view name, const Node& node, bool useParent,
                    const ShowMessage& showMessage) {
    bool free = false;
    reportErrors(showMessage, "CheckDuplNames", [&] {
        const Node* parent = useParent ? node.parent() : &node;
        if (parent == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
        free = std::ranges::none_of(parent->GetChildren(), [&](const Node* child) {
            return child->kind() == kind && child->text() == name && child != &node;
        });
        if (!free) showMessage(std::string(nameTaken));
    });
    return free;
}

bool CheckChars(std::string_view text, const ShowMessage& showMessage) {
    for (const char c : std::string_view(" .,:;\\/|")) {
        if (text.find(c) == std::string_view::npos) continue;
        showMessage(std::string("Character (") + c + ") not acceptable in string " +
                    shortened(text));
        return false;
    }
    return true;
}

std::string_view faultOfItemName(std::string_view name) {
    return name.empty() ? "Item name field is empty." : "";
}

std::string_view faultOfAddressPart(std::string_view part) {
    if (part.empty()) return "Group Address field is empty.";
    const double value = leadingNumber(part);
    if (value >= 0 && value <= 255) return {};
    return "Group Address field is not valid. It must be between 0 and 255.";
}

std::string_view faultOfElements(std::string_view count) {
    if (count.empty()) return "Number of elements field is empty.";
    return leadingNumber(count) < 0 ? "Number of elements field is not valid." : "";
}

std::string_view faultOfDeviceName(std::string_view name) {
    return name.empty() ? "Object Name field is empty." : "";
}

std::string_view faultOfTimeout(std::string_view milliseconds) {
    if (milliseconds.empty()) return "Receive Timeout field is empty.";
    return isNumber(milliseconds) ? "" : "Receive Timeout field is not correct.";
}
