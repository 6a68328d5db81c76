#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/installation.h"
#include "core/password_change.h"
#include "core/start.h"
#include "files/add_pipeline.h"
#include "files/check.h"
#include "store/database_opening.h"
#include "test_platform.h"

namespace corvalence::test {

/// The machine's process services, whoever runs the tests being an administrator.
class AdministratorProcess : public platform::Process {
  public:
    explicit AdministratorProcess(platform::Process& inner) : inner_(inner) {}
    std::unique_ptr<platform::InstanceLock> lockInstallation(const std::string& folder,
                                                             std::chrono::milliseconds wait) override {
        return inner_.lockInstallation(folder, wait);
    }
    bool isAdministrator() override { return isOne; }
    std::string currentFolder() override { return inner_.currentFolder(); }
    std::string programFile() override { return inner_.programFile(); }
    void catchCancelSignals() override { inner_.catchCancelSignals(); }
    bool cancelRequested() const noexcept override { return false; }

    bool isOne = true;

  private:
    platform::Process& inner_;
};

/// Gives the same password every time; leaves when it is refused, and the other one as well.
class OnePassword : public core::PasswordDialog {
  public:
    std::string password = "open sesame";
    int asked = 0;
    bool wasChoosing = false;
    bool wasDamaged = false;
    bool resets = false;  // before the password is given
    /// Given where the first one is refused; none while it is empty.
    std::string other;

    std::optional<crypto::SecretText> show(const core::PasswordQuestion& question) override {
        ++asked;
        wasChoosing = question.choosing;
        wasDamaged = question.damaged;
        if (resets) question.reset();
        if (question.again && (other.empty() || wasOtherGiven_)) return std::nullopt;
        wasOtherGiven_ = question.again;
        return crypto::SecretText(question.again ? other : password);
    }

  private:
    bool wasOtherGiven_ = false;
};

/// A user at the dialog about a change of the password, who fills it in as written down, and then leaves.
class ScriptedPasswordChange : public core::PasswordChangeDialog {
  public:
    struct Entry {
        std::string current, chosen, confirmation;
    };
    std::deque<Entry> entries;
    std::deque<std::string> reports;
    std::vector<std::string> shown;  // the fields at each showing, as "current/chosen/confirmation"

    bool show(core::PasswordEntry& entry) override {
        std::string fields;
        for (const crypto::SecretText* field : {&entry.current, &entry.chosen, &entry.confirmation})
            fields.append(field->view()) += "/";
        shown.push_back(fields);
        if (entries.empty()) return false;
        entry.current = crypto::SecretText(entries.front().current);
        entry.chosen = crypto::SecretText(entries.front().chosen);
        entry.confirmation = crypto::SecretText(entries.front().confirmation);
        entries.pop_front();
        return true;
    }
    std::optional<std::string> selectReport() override {
        if (reports.empty()) return std::nullopt;
        std::string report = reports.front();
        reports.pop_front();
        return report;
    }
};

struct Finding {
    files::ChangedFileDetails details;
    files::Reaction reaction;
    bool done;
    std::string message;
};

struct CheckOutcome {
    files::CheckSummary summary;
    std::vector<Finding> changed;
    std::vector<std::pair<std::string, std::string>> unchecked;  // path, reason
    std::vector<std::string> notes;

    const files::CheckCounts& counts() const { return summary.counts; }
};

/// What the user answers at changed files, in their order; the last answer holds for all that follow.
struct Answers {
    std::vector<files::Reaction> reactions = {files::Reaction::Ignore};
    files::RestoreChoice restore = files::RestoreChoice::MoveChangedFile;
    bool attended = false;
};

/// A machine with an installation, a folder of the user's files and one run of the program after the other.
class World {
  public:
    /// Makes the installation and starts the first run.
    World();
    /// A world in `folder` (with a closing separator), which outlives it and may be another process's as
    /// well: the settings lie there in a file. Installs nothing and starts no run.
    explicit World(const std::string& folder);
    ~World();

    TestPlatform machine;
    AdministratorProcess process{machine.system.process};
    std::optional<SystemSettingsStore> sharedSettings;
    platform::Platform platform;
    OnePassword password;

    // The program.
    core::InstallResult install() { return core::install(platform, data("")); }
    core::StartResult start();
    void stop() { run_.reset(); }
    core::Run& run() { return *run_; }
    store::Vault& vault() { return run_->vault(); }
    settings::Configuration& configuration() { return run_->configuration(); }
    void set(std::string_view key, const std::string& text) { configuration().write(key, text); }

    // The user's files, by name below "files".
    std::string path(std::string_view name) const { return root_ + native("files/" + std::string(name)); }
    std::string write(std::string_view name, std::string_view content);
    std::string read(std::string_view name) const { return readWholeFile(path(name)); }

    // Databases, by name in the data folder.
    std::string databasePath(std::string_view name = "db") const {
        return data("Databases/") + std::string(name);
    }
    std::string data(std::string_view name) const { return root_ + native("data/" + std::string(name)); }
    bool create(std::string_view name = "db", crypto::DigestCode digest = crypto::DigestCode::Sha256);
    store::OpenResult open(std::string_view name = "db");
    store::OpenDatabaseContext& context() { return *context_; }
    files::AddReport add(const std::vector<std::string>& names, std::string_view database = "db");
    files::AddReport addAll(std::string_view database = "db");
    CheckOutcome check(const Answers& answers = {}, std::string_view database = "db");
    std::vector<files::FileRecord> records(std::string_view database = "db");
    files::RestoreResult restore(std::string_view name,
                                 files::RestoreChoice choice = files::RestoreChoice::DeleteChangedFile);

    /// Files below the whole world that are working files by their names, or hold `secret` in plain outside
    /// "files".
    std::vector<std::string> leftovers(std::string_view secret = {}) const;

    core::PasswordChangeOutcome changePassword(const std::string& chosen,
                                               std::vector<std::string> savedReports = {});

  private:
    platform::Platform platformWith(platform::SettingsStore& settings);

    std::string root_;
    std::unique_ptr<core::Run> run_;
    std::optional<store::OpenDatabaseContext> context_;
};

}  // namespace corvalence::test
