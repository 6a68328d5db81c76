#pragma once

#include <chrono>
#include <exception>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "cli/console_user_interface.h"
#include "cli/exit_code.h"
#include "cli/json_writer.h"
#include "components/machine.h"
#include "crypto/md5.h"
#include "platform/mail.h"
#include "platform/platform.h"
#include "platform/supervisor.h"

namespace corvalence::cli {

/// The options that every command takes.
struct Options {
    std::optional<std::string> home;  // as given
    std::optional<std::string> passwordFile;
    bool json = false;
    bool quiet = false;
    bool yes = false;
    std::chrono::seconds wait{10};
};

/// What a command works with. References only.
struct Context {
    platform::Platform& platform;
    platform::Terminal& terminal;
    const components::Machine& machine;
    const std::shared_ptr<platform::Mail>& mail;
    platform::Supervisor& supervisor;
    ConsoleUserInterface& ui;
    const Options& options;
    std::string dataRoot;  // where `init` makes the data folders, with a closing separator
    std::istream& in;
    std::ostream& out;  // results
    std::ostream& err;  // everything else
    /// The document of --json. What a command leaves open is closed behind it, with the error where it
    /// failed.
    JsonWriter& json;
    std::optional<crypto::Md5::Digest> builtHelp;
};

/// Ends a command early: its exit code, and what is to be told on standard error, if it was not told yet.
class CommandEnd : public std::exception {
  public:
    explicit CommandEnd(ExitCode code, std::string text = {}) : code_(code), text_(std::move(text)) {}

    ExitCode code() const noexcept { return code_; }
    const char* what() const noexcept override { return text_.c_str(); }

  private:
    ExitCode code_;
    std::string text_;
};

/// A path from the command line, absolute and clean, its links unresolved.
inline std::string absolutePath(Context& context, const std::string& path) {
    return context.platform.paths.absolute(path, context.platform.process.currentFolder());
}

}  // namespace corvalence::cli
