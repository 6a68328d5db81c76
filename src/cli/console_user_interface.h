#pragma once

#include <chrono>
#include <memory>
#include <ostream>
#include <string>

#include "platform/clock.h"
#include "platform/process.h"
#include "platform/terminal.h"
#include "platform/user_interface.h"

namespace corvalence::cli {

/// The one line that work rewrites on a terminal while it goes on.
class ProgressLine {
  public:
    /// Short work shows nothing: the first drawing is due a moment after this.
    ProgressLine(platform::Clock& clock, std::ostream& err)
        : clock_(clock), err_(err), drawnAt_(clock.elapsed()) {}

    /// Whether the last drawing is old enough for the next.
    bool isDue();
    void draw(const std::string& text);
    /// Takes the line away, so that other text can stand there.
    void clear();

  private:
    platform::Clock& clock_;
    std::ostream& err_;
    bool isShown_ = false;
    std::chrono::milliseconds drawnAt_;
};

/// Speaks to the user on standard error; results are not its business.
class ConsoleUserInterface : public platform::UserInterface {
  public:
    struct Manners {
        bool quiet = false;       // no information, no progress
        bool answersYes = false;  // every question
    };

    ConsoleUserInterface(platform::Terminal& terminal, platform::Process& process, platform::Clock& clock,
                         std::ostream& err, Manners manners)
        : terminal_(terminal), process_(process), err_(err), manners_(manners), line_(clock, err) {}

    void message(platform::Icon icon, const std::string& text) override;
    /// After a cancel signal nobody is asked, whatever the manners.
    bool ask(platform::Icon icon, const std::string& text, bool unattended) override;
    /// A line on a terminal, nothing elsewhere.
    std::unique_ptr<platform::Progress> openProgress(const std::string& title) override;
    /// Not shown: a command's results and messages say the same.
    void status(int pane, const std::string& text) override;

    /// What was said or asked last.
    const std::string& lastText() const noexcept { return lastText_; }
    /// Whether a question was answered no because nobody was there to answer it.
    bool wasUnanswered() const noexcept { return wasUnanswered_; }

    /// To be called before anything else is written to a terminal.
    void clearLine() { line_.clear(); }

  private:
    platform::Terminal& terminal_;
    platform::Process& process_;
    std::ostream& err_;
    Manners manners_;
    ProgressLine line_;
    std::string lastText_;
    bool wasUnanswered_ = false;
};

}  // namespace corvalence::cli
