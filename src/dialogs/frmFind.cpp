#include "dialogs/frmFind.h"

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/Text.h"

void frmFind::Form_Load() {
    txtFind.text.clear();
    nextCounter_ = 0;
    notFound_.clear();
    loaded_ = true;
}

void frmFind::cmdFind_Click() {
    reportErrors(desktop_, "cmdFind_Click", [&] { selectMatch(0); });
}

void frmFind::cmdNext_Click() {
    reportErrors(desktop_, "cmdNext_Click", [&] {
        countUp(nextCounter_);
        selectMatch(nextCounter_);
    });
}

/// Selects the match after the first `skipped` ones, or the last one when there are fewer.
void frmFind::selectMatch(int skipped) {
    if (txtFind.text.empty()) return;
    Node* match = nullptr;
    for (const auto& node : document_.tree().nodes()) {
        const std::string_view begin =
            std::string_view(node->text()).substr(0, txtFind.text.size());
        if (!equalIgnoringCase(begin, txtFind.text)) continue;
        match = node.get();
        if (skipped-- == 0) break;
    }
    notFound_ = match == nullptr ? txtFind.text : std::string();
    if (match == nullptr || !focusTree_()) return;
    document_.tree().select(match);
    document_.tree().ensureVisible(*match);
}
