#include "cli/console_user_interface.h"

#include <algorithm>

#include "cli/console_text.h"

namespace corvalence::cli {

namespace {

constexpr std::chrono::milliseconds kRedrawInterval{100};
constexpr std::size_t kLineWidth = 79;

/// Where nobody looks on.
class SilentProgress : public platform::Progress {
  public:
    explicit SilentProgress(const platform::Process& process) : process_(process) {}

    bool cancelled() override { return process_.cancelRequested(); }

  private:
    const platform::Process& process_;
};

class LineProgress : public platform::Progress {
  public:
    LineProgress(const platform::Process& process, ProgressLine& line, std::string title)
        : process_(process), line_(line), subject_(std::move(title)) {
        drawIfDue();
    }
    ~LineProgress() override { line_.clear(); }

    bool cancelled() override { return process_.cancelRequested(); }
    void bar(std::uint32_t position) override {
        percent_ = static_cast<std::uint32_t>(std::uint64_t{position} * 100 / kSteps);
        drawIfDue();
    }
    void label(const std::string& text) override {
        label_ = text;
        std::replace(label_.begin(), label_.end(), '\n', ' ');
        drawIfDue();
    }
    void item(const platform::WorkItem& item) override {
        subject_ = item.name;
        drawIfDue();
    }

  private:
    void drawIfDue() {
        if (!line_.isDue()) return;
        std::string text = percent_ ? std::to_string(*percent_) + "%  " : "";
        if (!label_.empty()) text += label_ + "  ";
        line_.draw(text + lastCharacters(shown(subject_), kLineWidth - std::min(text.size(), kLineWidth)));
    }

    const platform::Process& process_;
    ProgressLine& line_;
    std::string subject_;
    std::string label_;
    std::optional<std::uint32_t> percent_;  // none for work of which nobody knows how much it is
};

bool isYes(const std::optional<std::string>& answer) {
    return answer && (*answer == "y" || *answer == "Y" || *answer == "yes" || *answer == "Yes");
}

}  // namespace

bool ProgressLine::isDue() {
    return clock_.elapsed() - drawnAt_ >= kRedrawInterval;
}

void ProgressLine::draw(const std::string& text) {
    // Carriage return and "erase in line" (ECMA-48).
    err_ << "\r" + text + "\x1b[K" << std::flush;
    drawnAt_ = clock_.elapsed();
    isShown_ = true;
}

void ProgressLine::clear() {
    if (!isShown_) return;
    err_ << "\r\x1b[K" << std::flush;
    isShown_ = false;
}

void ConsoleUserInterface::message(platform::Icon icon, const std::string& text) {
    lastText_ = text;
    if (manners_.quiet && icon == platform::Icon::Information) return;
    line_.clear();
    err_ << shown(text, LineFeeds::Keep) + "\n" << std::flush;
}

bool ConsoleUserInterface::ask(platform::Icon icon, const std::string& text, bool unattended) {
    line_.clear();
    const bool isCancelled = process_.cancelRequested();
    if (!isCancelled && !manners_.answersYes && terminal_.isInteractive()) {
        lastText_ = text;
        const auto answer = terminal_.readLine(shown(text, LineFeeds::Keep) + " [y/N] ");
        return answer || !process_.cancelRequested() ? isYes(answer) : unattended;
    }
    const bool answer = isCancelled ? unattended : manners_.answersYes || unattended;
    // What was decided without the user has to be told.
    std::string told = text + (answer ? " [yes]" : " [no]");
    if (!isCancelled && !answer) {
        wasUnanswered_ = true;
        told += "\nThere is no terminal to answer at; --yes answers yes.";
    }
    message(icon, told);
    return answer;
}

std::unique_ptr<platform::Progress> ConsoleUserInterface::openProgress(const std::string& title) {
    if (manners_.quiet || !terminal_.errorIsTerminal()) return std::make_unique<SilentProgress>(process_);
    return std::make_unique<LineProgress>(process_, line_, title);
}

void ConsoleUserInterface::status(int, const std::string&) {}

}  // namespace corvalence::cli
