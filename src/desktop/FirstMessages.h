// The messages of one action that may have very many of them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/Numbers.h"
#include "desktop/Desktop.h"

/// Keeps the first messages of an action and counts the others: each of 65,536 items may have the
/// same fault. They are shown once the work is done and the views are whole again.
///
///     withFirstMessages(desktop, [&](FirstMessages& messages) {
///         const ListView::Update update(list);
///         item.AddToListView(list, true, messages);
///     });
class FirstMessages {
 public:
    static constexpr std::size_t most = 5;

    void showMessage(const std::string& text) {
        if (first_.size() == most) {
            ++more_;
        } else {
            first_.push_back(text);
        }
    }

    /// Shows the first five, and one that tells how many there are besides: "… and 1,204 more".
    void showOn(Desktop& desktop) const {
        for (const auto& text : first_)
            desktop.showMessage(text);
        if (more_ > 0) desktop.showMessage("\u2026 and " + grouped(more_) + " more");
    }

 private:
    std::vector<std::string> first_;
    std::size_t more_ = 0;
};

/// Does the work, which tells its messages to what it is given, and then shows these, also when an
/// error has ended it. That error is raised on.
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
