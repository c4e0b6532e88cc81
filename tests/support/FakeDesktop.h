// A desktop that records messages and returns the answers that the test sets.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "base/RunTimeError.h"
#include "desktop/Desktop.h"

class FakeDesktop : public Desktop {
 public:
    /// The texts of all messages and questions, in order. An icon other than the usual one is
    /// added, " (stop)", and a default answer other than Yes, " [No]".
    const std::vector<std::string>& messages() const { return messages_; }
    void forgetMessages() { messages_.clear(); }

    /// The answers to the next questions, in order. A question without an answer fails the test.
    void willAnswer(std::initializer_list<Answer> answers) {
        answers_.insert(answers_.end(), answers);
    }
    void forgetAnswers() { answers_.clear(); }
    std::size_t answersLeft() const { return answers_.size(); }

    /// What the next file chooser returns; if not set, it is cancelled.
    void willChoose(std::string path) { chosen_ = std::move(path); }
    /// The error that file choosers raise, if set.
    std::optional<ErrorNumber> chooserFault;
    /// Title, filter and proposed path of the last chooser, joined by "|".
    std::string lastChooser;

    /// Called whenever a message or a question is shown.
    std::function<void()> onMessage = [] {};

    /// The next message or question raises "out of memory" and is not shown.
    bool fails = false;

    /// Called while a message, question or file chooser is open, or a node is dragged.
    std::function<void()> whileOpen = [] {};

    std::string folder = "/home/ann/Documents/";
    /// Called when pending events are processed.
    std::function<void()> onPendingEvents = [] {};
    std::string clipboard;
    Pointer pointer = Pointer::normal;

    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon icon) override {
        static constexpr std::array icons{"", " (exclamation)", " (stop)"};
        record(text + icons.at(static_cast<std::size_t>(icon)));
    }

    using Desktop::askYesNo;
    bool askYesNo(const std::string& text, Answer answer) override {
        const bool agreed = askYesNoCancel(text) == Answer::yes;
        if (answer == Answer::no) messages_.back() += " [No]";
        return agreed;
    }

    Answer askYesNoCancel(const std::string& text) override {
        record(text);
        if (answers_.empty()) {
            ADD_FAILURE() << "No answer is set for: " << text;
            return Answer::cancel;
        }
        const Answer answer = answers_.front();
        answers_.pop_front();
        return answer;
    }

    std::string chooseFileToOpen(const std::string& title, const FileFilter& filter) override {
        lastChooser = title + "|" + filter.description + "|" + filter.pattern;
        return choose();
    }

    std::string chooseFileToSave(const std::string& title, const FileFilter& filter,
                                 const std::string& path) override {
        lastChooser = title + "|" + filter.description + "|" + filter.pattern + "|" + path;
        return choose();
    }

    std::string defaultFolder() override { return folder; }

    std::string clipboardText() override { return clipboard; }
    void setClipboardText(const std::string& text) override { clipboard = text; }
    void clearClipboard() override { clipboard.clear(); }

    void setPointer(Pointer shape) override { pointer = shape; }

    void processPendingEvents() override { onPendingEvents(); }

 private:
    void record(const std::string& text) {
        if (std::exchange(fails, false)) throw std::bad_alloc();
        onMessage();
        messages_.push_back(text);
        whileOpen();
    }

    std::string choose() {
        whileOpen();
        if (chooserFault) throw RunTimeError(*chooserFault);
        if (!chosen_) throw RunTimeError(ErrorNumber::cancelled);
        std::string path = std::move(*chosen_);
        chosen_.reset();
        return path;
    }

    std::vector<std::string> messages_;
    std::deque<Answer> answers_;
    std::optional<std::string> chosen_;
};
