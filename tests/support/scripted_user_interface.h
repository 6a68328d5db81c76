#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/user_interface.h"

namespace corvalence::test {

/// A user who answers as written down beforehand, and remembers the messages and questions.
class ScriptedUserInterface : public platform::UserInterface {
  public:
    struct Message {
        platform::Icon icon;
        std::string text;
        int duringWork = 0;  // progress windows that were open
    };

    // What was shown, oldest first.
    std::vector<Message> messages;
    std::vector<Message> questions;
    std::vector<std::string> statuses;  // of the first pane
    std::vector<std::string> progressTitles;
    std::uint64_t mostRemaining = 0;  // items, of all that progress windows told
    /// The counters that are shown at the moment, if any.
    const platform::Counting* counting = nullptr;

    // What to answer. Where the answers are used up, a question gets its unattended answer.
    std::deque<bool> answers;
    /// Every question to cancelled() from the one of this number on (the first is 1) is answered yes.
    std::optional<std::uint64_t> cancelAt;
    /// Called at every question to cancelled(), before it is answered: what happens in the middle of work.
    std::function<void()> meanwhile;

    std::uint64_t cancelQuestions() const noexcept { return cancelQuestions_; }
    int openProgressWindows() const noexcept { return openProgress_; }
    bool saw(std::string_view text) const {
        const auto holds = [&](const Message& message) { return message.text == text; };
        return std::any_of(messages.begin(), messages.end(), holds) ||
               std::any_of(questions.begin(), questions.end(), holds);
    }
    /// The messages, one a line; for the words of a failed expectation.
    std::string transcript() const {
        std::string all;
        for (const Message& message : messages)
            all += message.text + "\n";
        for (const Message& question : questions)
            all += "? " + question.text + "\n";
        return all;
    }

    void message(platform::Icon icon, const std::string& text) override {
        messages.push_back({icon, text, openProgress_});
    }
    bool ask(platform::Icon icon, const std::string& text, bool unattended) override {
        questions.push_back({icon, text, openProgress_});
        if (answers.empty()) return unattended;
        const bool answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::unique_ptr<platform::Progress> openProgress(const std::string& title) override {
        progressTitles.push_back(title);
        return std::make_unique<ScriptedProgress>(*this);
    }
    void status(int pane, const std::string& text) override {
        if (pane == 0) statuses.push_back(text);
    }

  private:
    class ScriptedProgress : public platform::Progress {
      public:
        explicit ScriptedProgress(ScriptedUserInterface& ui) : ui_(ui) { ++ui_.openProgress_; }
        ~ScriptedProgress() override { --ui_.openProgress_; }

        bool cancelled() override {
            ++ui_.cancelQuestions_;
            if (ui_.meanwhile) ui_.meanwhile();
            return ui_.cancelAt && ui_.cancelQuestions_ >= *ui_.cancelAt;
        }
        void item(const platform::WorkItem& item) override {
            ui_.mostRemaining = std::max(ui_.mostRemaining, item.remaining);
        }
        void watch(const platform::Counting* counting) override { ui_.counting = counting; }

      private:
        ScriptedUserInterface& ui_;
    };

    std::uint64_t cancelQuestions_ = 0;
    int openProgress_ = 0;
};

}  // namespace corvalence::test
