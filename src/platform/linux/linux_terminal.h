#pragma once

#include "platform/process.h"
#include "platform/terminal.h"

namespace corvalence::platform::linux_system {

/// A terminal by three descriptors, which stay the caller's. A signal that would end or stop the process
/// while it waits for a line takes effect after echo is back.
class LinuxTerminal : public Terminal {
  public:
    explicit LinuxTerminal(const Process& process, int input = 0, int output = 1, int error = 2)
        : process_(process), input_(input), output_(output), error_(error) {}

    bool isInteractive() override;
    bool inputIsTerminal() override;
    bool outputIsTerminal() override;
    bool errorIsTerminal() override;

    /// Lines longer than 4095 bytes are refused as if there were none.
    std::optional<std::string> readSecret(const std::string& prompt) override;
    std::optional<std::string> readLine(const std::string& prompt) override;

  private:
    enum class Answer { Line, None, Stopped };

    void show(const std::string& text) const;
    Answer readOnce(bool echo, const std::string& prompt, std::string& line) const;
    std::optional<std::string> read(bool echo, const std::string& prompt) const;

    const Process& process_;
    int input_;
    int output_;
    int error_;
};

}  // namespace corvalence::platform::linux_system
