#pragma once

#include <string>

namespace corvalence::platform {

/// Who started this program to run in the background and watches over it. Nothing happens where nobody does;
/// calls never fail.
class Supervisor {
  public:
    virtual ~Supervisor() = default;
    /// The program is at work from now on.
    virtual void ready() {}
    /// What it does at the moment, in one line.
    virtual void status(const std::string&) {}
    /// It is about to end.
    virtual void stopping() {}
};

}  // namespace corvalence::platform
