// A desktop that a test plays: it remembers what was shown and gives the answers it was told to.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"
#include "desktop/Desktop.h"

class FakeDesktop : public Desktop {
 public:
    /// Every text of a message or question, in order.
    const std::vector<std::string>& messages() const { return messages_; }
    /// How each was shown, unless in the usual way: "(stop)" for a picture, "[No]" for the answer
    /// that Enter would give.
    const std::vector<std::string>& manners() const { return manners_; }
    void forgetMessages() {
        messages_.clear();
        manners_.clear();
    }

    /// The answers to the coming questions, in order. A question without one fails the test.
    void willAnswer(std::initializer_list<Answer> answers) {
        answers_.insert(answers_.end(), answers);
    }
    void forgetAnswers() { answers_.clear(); }
    std::size_t answersLeft() const { return answers_.size(); }

    /// What the next chooser gives; without one it is cancelled.
    void willChoose(std::string path) { chosen_ = std::move(path); }
    /// When set, choosers fail so.
    std::optional<ErrorNumber> chooserFault;
    /// Title, filter and proposed path of the last chooser, joined by "|".
    std::string lastChooser;

    /// Called whenever a message or a question is shown.
    std::function<void()> onMessage = [] {};

    /// When set, the next message or question finds too little memory, and is not shown.
    bool fails = false;

    /// Called in each message, question, chooser and drag while it is open.
    std::function<void()> whileOpen = [] {};

    std::string folder = "/home/ann/Documents/";
    /// Called whenever pending events are given a turn.
    std::function<void()> onPendingEvents = [] {};
    std::string clipboard;
    Pointer pointer = Pointer::normal;

    using Desktop::showMessage;
    void showMessage(const std::string& text, MessageIcon icon) override {
        static constexpr std::array pictures{"", " (exclamation)", " (stop)"};
        keep(text, pictures.at(static_cast<std::size_t>(icon)));
    }

    using Desktop::askYesNo;
    bool askYesNo(const std::string& text, Answer answer) override {
        const bool agreed = askYesNoCancel(text) == Answer::yes;
        if (answer == Answer::no) manners_.back() = " [No]";
        return agreed;
    }

    Answer askYesNoCancel(const std::string& text) override {
        keep(text, "");
        if (answers_.empty()) {
            ADD_FAILURE() << "Nobody said how to answer: " << text;
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
    void keep(const std::string& text, const char* manner) {
        if (std::exchange(fails, false)) throw std::bad_alloc();
        onMessage();
        messages_.push_back(text);
        manners_.emplace_back(manner);
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

    std::vector<std::string> messages_, manners_;
    std::deque<Answer> answers_;
    std::optional<std::string> chosen_;
};
