#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace corvalence::platform {

enum class Icon { Information, Warning, Stop };

/// A modeless window (or a line on a terminal) that shows long work. It goes when the object goes.
class Progress {
  public:
    virtual ~Progress() = default;

    static constexpr std::uint32_t kSteps = 65000;

    /// Whether the user wants the work to stop. Costs next to nothing; asked at least once per block of work.
    /// A graphical front pumps its events here.
    virtual bool cancelled() = 0;
    /// Position of the bar, 0 to kSteps.
    virtual void bar(std::uint32_t position) = 0;
    /// The label of remaining bytes.
    virtual void label(const std::string& text) = 0;
    /// The file that is being worked on, by its path, and the number of files that remain after it.
    virtual void file(const std::string& path, std::uint64_t remaining) = 0;
};

/// How logic speaks to its user. Calls are synchronous.
class UserInterface {
  public:
    virtual ~UserInterface() = default;

    virtual void message(Icon icon, const std::string& text) = 0;
    /// A question with Yes and No. `unattended` is the answer where nobody can be asked.
    virtual bool ask(Icon icon, const std::string& text, bool unattended = false) = 0;
    virtual std::unique_ptr<Progress> openProgress(const std::string& title) = 0;
    /// Text of a status pane: 0 says what is going on, 1 the state of the database.
    virtual void status(int pane, const std::string& text) = 0;
};

}  // namespace corvalence::platform
