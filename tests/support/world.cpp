#include "world.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "store/database_creation.h"
#include "store/database_opening.h"

namespace corvalence::test {

namespace {

class AnsweringDialog : public files::ChangedFileDetailsDialog {
  public:
    explicit AnsweringDialog(const Answers& answers) : answers_(answers) {}
    files::Reaction show(const files::ChangedFileDetails&) override {
        return answers_.reactions[std::min(next_++, answers_.reactions.size() - 1)];
    }
    std::optional<files::RestoreChoice> showRestore(const std::string&) override { return answers_.restore; }
    bool attended() const override { return answers_.attended; }

  private:
    const Answers& answers_;
    std::size_t next_ = 0;
};

class OutcomeObserver : public files::CheckObserver {
  public:
    explicit OutcomeObserver(CheckOutcome& outcome) : outcome_(outcome) {}
    void unchecked(const std::string& path, const std::string& reason) override {
        outcome_.unchecked.emplace_back(path, reason);
    }
    void changed(const files::ChangedFileDetails& details, files::Reaction reaction, bool done,
                 const std::string& message) override {
        outcome_.changed.push_back({details, reaction, done, message});
    }
    void note(const std::string&, const std::string& text) override { outcome_.notes.push_back(text); }

  private:
    CheckOutcome& outcome_;
};

}  // namespace

platform::Platform World::platformWith(platform::SettingsStore& settings) {
    return {machine.files,          machine.access, machine.volumes, machine.status, process,
            machine.platform.types, machine.clock,  settings,        machine.sound,  machine.ui,
            machine.platform.paths};
}

World::World() : platform(platformWith(machine.settings)), root_(machine.folder.path()) {
    std::filesystem::create_directories(root_ + "files");
    std::filesystem::create_directories(root_ + "data");
    EXPECT_EQ(install(), core::InstallResult::Installed);
    EXPECT_EQ(start(), core::StartResult::Ready);
}

World::World(const std::string& folder)
    : sharedSettings(std::in_place, machine.files, folder + "settings.json", machine.system.paths),
      platform(platformWith(*sharedSettings)),
      root_(folder) {
    std::filesystem::create_directories(root_ + "files");
    std::filesystem::create_directories(root_ + "data");
}

World::~World() = default;

core::StartResult World::start() {
    run_.reset();
    context_.reset();
    return core::Run::start(platform, password, std::chrono::milliseconds(0), run_);
}

core::PasswordChangeOutcome World::changePassword(const std::string& chosen,
                                                  std::vector<std::string> savedReports) {
    ScriptedPasswordChange dialog;
    dialog.entries.push_back({password.password, chosen, chosen});
    return core::changePassword(run(), dialog, std::move(savedReports));
}

std::string World::write(std::string_view name, std::string_view content) {
    std::filesystem::create_directories(fsPath(path(name)).parent_path());
    writeWholeFile(path(name), content);
    return path(name);
}

bool World::create(std::string_view name, crypto::DigestCode digest) {
    store::CreationRequest request;
    request.location = data("Databases");
    request.name = name;
    request.digest = digest;
    return store::DatabaseCreation(vault()).create(request).has_value();
}

store::OpenResult World::open(std::string_view name) {
    context_.reset();
    return store::DatabaseOpening(vault()).openWithRecovery(databasePath(name), context_);
}

files::AddReport World::add(const std::vector<std::string>& names, std::string_view database) {
    EXPECT_EQ(open(database), store::OpenResult::Opened);
    std::vector<std::string> paths;
    for (const std::string& name : names)
        paths.push_back(fsPath(name).is_absolute() ? name : path(name));
    return files::AddPipeline(vault(), context()).addFiles(paths, {true, true});
}

files::AddReport World::addAll(std::string_view database) {
    EXPECT_EQ(open(database), store::OpenResult::Opened);
    return files::AddPipeline(vault(), context()).addLocation(path(""), {}, {});
}

CheckOutcome World::check(const Answers& answers, std::string_view database) {
    CheckOutcome outcome;
    const auto opened = open(database);
    EXPECT_TRUE(opened == store::OpenResult::Opened || opened == store::OpenResult::Restored)
        << machine.ui.transcript();
    if (!context_) return outcome;
    AnsweringDialog dialog(answers);
    OutcomeObserver observer(outcome);
    outcome.summary = files::FileContentsCheck(vault(), context(), dialog, observer).checkAllFiles();
    return outcome;
}

std::vector<files::FileRecord> World::records(std::string_view database) {
    EXPECT_EQ(open(database), store::OpenResult::Opened);
    std::vector<files::FileRecord> records;
    files::DatabaseCopy copy(vault(), context());
    auto reader = copy.records();
    for (std::string_view line; reader.next(line);) {
        auto record = files::FileRecord::parse(line, crypto::digestKind(context().digest()).width);
        EXPECT_TRUE(record.has_value()) << line;
        if (record) records.push_back(*record);
    }
    return records;
}

files::RestoreResult World::restore(std::string_view name, files::RestoreChoice choice) {
    for (const files::FileRecord& record : records()) {
        if (record.path == path(name)) {
            return files::FileRestore(vault(), context()).restoreFile(record, choice);
        }
    }
    ADD_FAILURE() << name << " is not listed";
    return {};
}

std::vector<std::string> World::leftovers(std::string_view secret) const {
    constexpr std::string_view kMarks[] = {"123456789z", "123456789s", "123456789n",
                                           "987654321z", ".Ntemp",     ".Ptemp"};
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root_)) {
        if (!entry.is_regular_file()) continue;
        const std::string file = entry.path().string();
        const std::string name = entry.path().filename().string();
        const bool marked = std::any_of(std::begin(kMarks), std::end(kMarks), [&](std::string_view mark) {
            return name.find(mark) != std::string::npos;
        });
        if (name.ends_with("Chk123456789z")) continue;  // a report, sealed
        const bool isUsers = file.starts_with(path(""));
        const bool plain =
            !secret.empty() && !isUsers && readIfOpen(file).value_or("").find(secret) != std::string::npos;
        if (marked || plain) found.push_back(file);
    }
    return found;
}

}  // namespace corvalence::test
