#pragma once

#include <ostream>

#include "platform/sound.h"

namespace corvalence::cli {

/// Every sound is the terminal's bell; silent where there is no terminal to ring it.
class TerminalBell : public platform::Sound {
  public:
    TerminalBell(std::ostream& err, bool rings) : err_(err), rings_(rings) {}

    void playResource(const std::string&) override { ring(); }
    void playFile(const std::string&) override { ring(); }

  private:
    void ring() {
        if (rings_) err_ << '\a' << std::flush;
    }

    std::ostream& err_;
    bool rings_;
};

}  // namespace corvalence::cli
