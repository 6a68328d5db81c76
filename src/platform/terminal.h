#pragma once

#include <optional>
#include <string>

namespace corvalence::platform {

/// The terminal a console program runs at, if any.
class Terminal {
  public:
    virtual ~Terminal() = default;

    /// Whether standard input, and standard error for prompts, both lead to a terminal.
    virtual bool isInteractive() = 0;
    /// Whether standard input alone leads to one: what is typed there must not be echoed unasked.
    virtual bool inputIsTerminal() = 0;
    /// Whether standard output, or standard error, leads to a terminal.
    virtual bool outputIsTerminal() = 0;
    virtual bool errorIsTerminal() = 0;

    /// Prompts on standard error and reads a line without echo, of any bytes; refuses rather than echoes
    /// where echo cannot be turned off. Empty at end of input or when a cancel signal arrives. Echo is back
    /// afterwards in every case.
    virtual std::optional<std::string> readSecret(const std::string& prompt) = 0;
    /// Prompts on standard error and reads a line; empty as above.
    virtual std::optional<std::string> readLine(const std::string& prompt) = 0;
};

}  // namespace corvalence::platform
