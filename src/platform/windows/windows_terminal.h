#pragma once

#include <windows.h>

#include "platform/process.h"
#include "platform/terminal.h"

namespace corvalence::platform::windows_system {

/// The console, where the standard handles lead to it.
class WindowsTerminal : public Terminal {
  public:
    explicit WindowsTerminal(const Process& process) : process_(process) {}

    bool isInteractive() override;
    bool inputIsTerminal() override;
    bool outputIsTerminal() override;
    bool errorIsTerminal() override;

    /// Lines longer than 4095 characters are refused as if there were none.
    std::optional<std::string> readSecret(const std::string& prompt) override;
    std::optional<std::string> readLine(const std::string& prompt) override;

  private:
    std::optional<std::string> read(bool echo, const std::string& prompt);

    const Process& process_;
};

}  // namespace corvalence::platform::windows_system
