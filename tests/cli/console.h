#pragma once

#include <deque>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/program.h"
#include "fake_clock.h"
#include "faulty_file_system.h"
#include "listed_recycle_bin.h"
#include "listed_registry.h"
#include "listed_services.h"
#include "scripted_mail.h"
#include "small_disk.h"
#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {

/// A terminal with a user who types what is written down, or none at all.
class ScriptedTerminal : public platform::Terminal {
  public:
    bool isThere = false;
    bool showsOutput = true;
    std::deque<std::string> secrets;
    std::deque<std::string> lines;
    std::string prompts;
    /// What happens where the user types nothing any more.
    std::function<void()> atEnd;

    bool isInteractive() override { return isThere; }
    bool inputIsTerminal() override { return isThere; }
    bool outputIsTerminal() override { return isThere && showsOutput; }
    bool errorIsTerminal() override { return isThere; }
    std::optional<std::string> readSecret(const std::string& prompt) override {
        return next(secrets, prompt);
    }
    std::optional<std::string> readLine(const std::string& prompt) override { return next(lines, prompt); }

  private:
    std::optional<std::string> next(std::deque<std::string>& typed, const std::string& prompt) {
        prompts += prompt;
        if (typed.empty()) {
            if (atEnd) atEnd();
            return std::nullopt;
        }
        std::string line = typed.front();
        typed.pop_front();
        return line;
    }
};

inline constexpr std::uint64_t kNever = UINT64_MAX;

/// The machine's process services with a signal at a planned moment.
class SignalledProcess : public platform::Process {
  public:
    explicit SignalledProcess(platform::Process& inner) : inner_(inner) {}

    std::string folder;   // the current one
    std::string program;  // the running one
    bool hasRights = true;
    /// cancelRequested() is true from its question of this number on, counted from now.
    void cancelAt(std::uint64_t question) {
        cancelAt_ = question;
        questions_ = 0;
    }

    std::unique_ptr<platform::InstanceLock> lockInstallation(const std::string& root,
                                                             std::chrono::milliseconds wait) override {
        return inner_.lockInstallation(root, wait);
    }
    bool isAdministrator() override { return hasRights; }
    std::string currentFolder() override { return folder; }
    std::string programFile() override { return program; }
    void catchCancelSignals() override {}
    bool cancelRequested() const noexcept override { return ++questions_ >= cancelAt_; }

  private:
    platform::Process& inner_;
    std::uint64_t cancelAt_ = kNever;
    mutable std::uint64_t questions_ = 0;
};

struct Outcome {
    int code = -1;
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

/// A user at the console of a machine: files in one folder, which is the current one, an installation beside
/// them. Every command gets the password "secret" on its standard input.
class Console {
  public:
    Console();

    /// One run of the program in this process.
    Outcome run(std::vector<std::string> arguments);
    /// The same, which has to end with 0.
    Outcome done(std::vector<std::string> arguments);
    /// init, and a database "db" with all files that are there.
    void begin();

    std::string write(std::string_view name, std::string_view content) const {
        return folder.write("files/" + std::string(name), content);
    }
    std::string read(std::string_view name) const { return folder.read("files/" + std::string(name)); }
    std::string path(std::string_view name) const { return folder / ("files/" + std::string(name)); }
    std::string home(std::string_view name = {}) const { return folder / ("home/" + std::string(name)); }

    /// Names of working files that were left behind, anywhere.
    std::vector<std::string> leftovers() const;

    /// Of the help that was built with the program.
    std::optional<crypto::Md5::Digest> builtHelp;

    TempFolder folder;
    SystemBackEnd system;
    FaultPlan faults;
    FaultyFileSystem files{system.files, faults};
    FaultyAccessControl access{system.access, faults};
    FakeClock clock;
    SmallDisk status{system.status};
    SignalledProcess process{system.process};
    ScriptedTerminal terminal;
    ListedRecycleBin recycleBin;
    ListedServices services;
    ListedRegistry registry;
    std::shared_ptr<ScriptedMail> mail = std::make_shared<ScriptedMail>();
    platform::Supervisor supervisor;
    std::string input = "secret\n";
    bool outputFails = false;
};

}  // namespace corvalence::test
