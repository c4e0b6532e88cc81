// Limits the number of messages that one action shows.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/Numbers.h"
#include "desktop/Desktop.h"

/// Keeps the first messages of an action and counts the others, as each of 65,536 items may have
/// the same fault. The messages are shown at the end of the action, when the views are up to date:
///
///     withFirstMessages(desktop, [&](FirstMessages& messages) {
///         const ListView::Update update(list);
///         item.AddToListView(list, true, messages);
///     });
class FirstMessages {
 public:
    static constexpr std::size_t maxShown = 5;

    void showMessage(const std::string& text) {
        if (first_.size() == maxShown) {
            ++more_;
        } else {
            first_.push_back(text);
        }
    }

    /// Shows the first five messages, then one with the number of the others: "… and 1,204 more".
    void showOn(Desktop& desktop) const {
        for (const auto& text : first_)
            desktop.showMessage(text);
        if (more_ > 0)
            desktop.showMessage("\u2026 and " + withThousandsSeparators(more_) + " more");
    }

 private:
    std::vector<std::string> first_;
    std::size_t more_ = 0;
};

/// Calls `work` with a FirstMessages object, and then shows the messages, also when an error ended
/// the work. That error is raised again.
template <typename Work>
void withFirstMessages(Desktop& desktop, const Work& work) {
    FirstMessages messages;
    try {
        work(messages);
    } catch (...) {
        messages.showOn(desktop);
        throw;
    }
    messages.showOn(desktop);
}
