#include "model/Checks.h"

#include <algorithm>
#include <string>

#include "base/RunTimeError.h"

bool CheckDuplNames(NodeKind kind, std::string_view name, const Node& node, bool useParent,
                    const Tell& tell) {
    bool free = false;
    reportErrors(tell, "CheckDuplNames", [&] {
        const Node* parent = useParent ? node.parent() : &node;
        if (parent == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
        free = std::ranges::none_of(parent->GetChildren(), [&](const Node* child) {
            return child->kind() == kind && child->text() == name && child != &node;
        });
        if (!free) tell("Name already existing. Please use a different name");
    });
    return free;
}

bool CheckChars(std::string_view text, const Tell& tell) {
    for (const char c : std::string_view(" .,:;\\/|")) {
        if (text.find(c) == std::string_view::npos) continue;
        tell(std::string("Character (") + c + ") not acceptable in string " + std::string(text));
        return false;
    }
    return true;
}
