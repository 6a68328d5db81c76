#include "scenarios.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "components/complete_system.h"
#include "crypto/sealed_file.h"
#include "listed_recycle_bin.h"
#include "listed_registry.h"
#include "listed_services.h"
#include "reports/report_file.h"
#include "reports/report_writer.h"
#include "schedule/log_lines.h"
#include "schedule/schedule_list.h"
#include "schedule/schedule_round.h"
#include "store/database_creation.h"
#include "store/database_deletion.h"
#include "store/database_index.h"

namespace corvalence::test {

namespace {

namespace fs = std::filesystem;
using files::Reaction;
using files::RestoreChoice;

constexpr std::string_view kSealed = "N";
constexpr std::string_view kPlain = "P";

void changeBoth(World& world) {
    world.write("a", "a, changed by its user");
    world.write("b", "b, changed by its user");
}

Claim claimOf(World& world, bool done, std::string said = {}) {
    return {done, said + world.machine.ui.transcript()};
}

bool lists(World& world, std::string_view name) {
    const auto records = world.records();
    return std::any_of(records.begin(), records.end(),
                       [&](const files::FileRecord& record) { return record.path == world.path(name); });
}

bool restores(World& world, std::string_view name, const std::string& content) {
    world.write(name, "to be put back");
    return world.restore(name).restored && world.read(name) == content;
}

Claim checkWith(World& world, Answers answers) {
    const CheckOutcome outcome = world.check(answers);
    bool done = outcome.notes.empty() || answers.reactions[0] == Reaction::Restore;
    std::string said;
    for (const Finding& finding : outcome.changed) {
        done &= finding.done;
        said += finding.message + "\n";
    }
    for (const std::string& note : outcome.notes)
        said += note + "\n";
    for (const auto& [path, reason] : outcome.unchecked)
        said += path + ": " + reason + "\n";
    return claimOf(world, done, said);
}

Claim create(World& world) {
    return claimOf(world, world.create("new"));
}
bool isCreated(World& world) {
    return world.open("new") == store::OpenResult::Opened;
}

void writeNew(World& world) {
    world.write("new/1", recordedContent("new/1"));
    world.write("new/2", recordedContent("new/2"));
}
Claim add(World& world) {
    return claimOf(world, world.add({"new/1", "new/2"}).added == 2);
}
Claim addLocation(World& world) {
    return claimOf(world, world.addAll().added == 2);
}
bool isAdded(World& world) {
    return lists(world, "new/1") && lists(world, "new/2") &&
           restores(world, "new/1", recordedContent("new/1")) &&
           restores(world, "new/2", recordedContent("new/2"));
}

Claim updateAll(World& world) {
    return checkWith(world, {.reactions = {Reaction::UpdateWithBackup}});
}
Claim updateOneByOne(World& world) {
    return checkWith(world, {.reactions = {Reaction::UpdateWithBackup}, .attended = true});
}
bool isUpdated(World& world) {
    return world.check().counts().changed == 0 && restores(world, "a", "a, changed by its user") &&
           restores(world, "b", "b, changed by its user");
}
Claim updateRecords(World& world) {
    return checkWith(world, {.reactions = {Reaction::UpdateKeepBackup}});
}
bool areRecordsUpdated(World& world) {
    return world.check().counts().changed == 0;
}

Claim restoreBoth(World& world) {
    return checkWith(world, {.reactions = {Reaction::Restore}, .restore = RestoreChoice::DeleteChangedFile});
}
Claim restoreAndMove(World& world) {
    return checkWith(world, {.reactions = {Reaction::Restore}});
}
bool areRestored(World& world) {
    return world.read("a") == recordedContent("a") && world.read("b") == recordedContent("b");
}

void loseOne(World& world) {
    fs::remove(world.path("a"));
}
Claim restoreLost(World& world) {
    const auto result = world.restore("a");
    return claimOf(world, result.restored, result.message);
}
bool isLostOneBack(World& world) {
    return world.read("a") == recordedContent("a");
}

Claim deleteDatabase(World& world) {
    world.open();
    schedule::ScheduleList schedule(world.vault());
    return claimOf(world, store::deleteDatabase(world.vault(), world.context(), schedule) ==
                              store::DeletionResult::Deleted);
}
bool isDeleted(World& world) {
    return !store::DatabaseIndex(world.vault()).findExact(world.databasePath()) &&
           !fs::exists(world.databasePath()) && !fs::exists(world.databasePath("db~"));
}

void damageDatabase(World& world) {
    std::string sealed = readWholeFile(world.databasePath());
    sealed[sealed.size() / 2] ^= 1;
    writeWholeFile(world.databasePath(), sealed);
}
Claim recover(World& world) {
    return claimOf(world, world.open() == store::OpenResult::Restored);
}
bool isRecovered(World& world) {
    return world.open() == store::OpenResult::Opened;
}

Claim stamp(World& world) {
    return claimOf(world, world.check().counts().checked == 3);
}
bool isStamped(World& world) {
    return store::DatabaseIndex(world.vault()).findExact(world.databasePath())->lastCheck.has_value();
}

/// What baselines of the world's files need beside it.
struct BaselineWork {
    explicit BaselineWork(World& of)
        : world(of),
          machine{of.machine.system.streams, bin, services, registry, of.machine.system.accessLists} {}

    bool create() {
        store::CreationRequest request;
        request.location = world.data("Databases");
        request.name = "new";
        request.kind = kind.kind;
        bool wasCancelled = false;
        const auto creation = kind.makeCreation(world.vault(), machine);
        return components::createDatabase(world.vault(), kind, request, *creation, wasCancelled).has_value();
    }
    bool check() {
        return world.open("new") == store::OpenResult::Opened &&
               components::checkDatabase(world.vault(), machine, kind, world.context()).isWhole();
    }

    bool createSystem() {
        store::CreationRequest request;
        request.location = world.data("Databases");
        request.name = "new";
        return components::createCompleteSystem(world.vault(), machine, request,
                                                {files::AddBackups::Sealed, false})
            .database.has_value();
    }
    /// `said` gets what the components could not do.
    bool checkSystem(std::string& said) {
        if (world.open("new") != store::OpenResult::Opened) return false;
        const std::array all = {reports::ReportKind::FileContents, reports::ReportKind::DirectoryStructure};
        const auto checked = components::checkCompleteSystem(world.vault(), machine, world.context(), all);
        for (const components::ComponentChecked& component : checked.components) {
            for (const components::Remark& remark : component.outcome.remarks) {
                for (const files::UnreadableEntry& detail : remark.details)
                    said += detail.path + ": " + detail.reason + "\n";
            }
        }
        return checked.isWhole() && !checked.differs();
    }

    World& world;
    ListedRecycleBin bin;
    ListedServices services;
    ListedRegistry registry;
    components::Machine machine;
    const components::ComponentKind& kind =
        *components::findComponentKind(store::DatabaseKind::DirectoryStructure);
};

void limitWalks(World& world) {
    world.set(settings::key::kWalkRoots, world.path(""));
}
Claim createBaseline(World& world) {
    return claimOf(world, BaselineWork(world).create());
}
bool isBaselineCreated(World& world) {
    return BaselineWork(world).check() && fs::exists(world.databasePath("newBn~"));
}
void prepareBaseline(World& world) {
    limitWalks(world);
    BaselineWork(world).create();
}
Claim checkBaseline(World& world) {
    return claimOf(world, BaselineWork(world).check());
}
bool isBaselineChecked(World& world) {
    return store::DatabaseIndex(world.vault()).findExact(world.databasePath("new"))->lastCheck &&
           reports::ReportFile::open(
               world.vault(),
               reports::reportPath(world.configuration(), reports::ReportKind::DirectoryStructure))
               .has_value();
}
Claim deleteBaseline(World& world) {
    world.open("new");
    schedule::ScheduleList schedule(world.vault());
    return claimOf(world, store::deleteDatabase(world.vault(), world.context(), schedule) ==
                              store::DeletionResult::Deleted);
}
bool isBaselineDeleted(World& world) {
    const auto names = {"new", "newd", "newa", "newBn", "new~", "newd~", "newa~", "newBn~"};
    return std::none_of(names.begin(), names.end(),
                        [&](const char* name) { return fs::exists(world.databasePath(name)); });
}

Claim createSystem(World& world) {
    return claimOf(world, BaselineWork(world).createSystem());
}
bool isSystemCreated(World& world) {
    std::string said;
    return BaselineWork(world).checkSystem(said) && world.records("new").size() == 3 &&
           fs::exists(world.databasePath("newS~"));
}
void prepareSystem(World& world) {
    limitWalks(world);
    BaselineWork(world).createSystem();
}
Claim checkSystem(World& world) {
    std::string said;
    const bool done = BaselineWork(world).checkSystem(said);
    return claimOf(world, done, said);
}

/// A round over the schedule with nobody there to see it, but for how its checks end.
class UnattendedRound : public schedule::WorkListener, public schedule::MailWaiting {
  public:
    explicit UnattendedRound(World& world) : work_(world), world_(world) {}

    /// Whether every check came to its end and nothing had to be told.
    bool run() {
        const std::size_t told = world_.machine.ui.messages.size();
        const schedule::WorkContext context{world_.vault(),
                                            work_.machine,
                                            *this,
                                            mail_,
                                            *this,
                                            [this](const std::string& title) { return world_.platform.ui.openProgress(title); }};
        schedule::visitSchedule(context, schedule::Timer::BackgroundTick, {}, [] { return true; });
        return isWhole_ && world_.machine.ui.messages.size() == told;
    }

    void begins(const std::string&, schedule::WorkKind) override {}
    void firstDifference() override {}
    void progress(std::uint32_t) override {}
    void needsRestart() override {}
    void ends(schedule::WorkResult result) override {
        isWhole_ =
            isWhole_ && (result == schedule::WorkResult::Same || result == schedule::WorkResult::Differs);
    }
    bool goOn() override { return false; }

  private:
    BaselineWork work_;
    World& world_;
    bool isWhole_ = true;
    schedule::MailThread mail_{nullptr};
};

std::string sessionLog(World& world) {
    const auto file =
        world.machine.files.openShared(schedule::LogFiles(world.vault()).path(schedule::LogKind::Session));
    schedule::LogLines lines(*file, world.vault().session.key, world.vault().session.chains.LogIV);
    std::string text;
    for (std::string_view line; lines.next(line);)
        text.append(line) += "\n";
    return text;
}
void prepareRound(World& world) {
    changeBoth(world);
    world.set(settings::key::kAutoRestore, "1");
    UnattendedRound(world).run();
    changeBoth(world);
}
Claim visitUnattended(World& world) {
    const bool isQuiet = UnattendedRound(world).run();
    return claimOf(world, isQuiet && areRestored(world), sessionLog(world));
}
bool isVisited(World& world) {
    const std::string log = sessionLog(world);
    return areRestored(world) && std::count(log.begin(), log.end(), '_') == 4 * 85;
}
/// Whatever a round was ended at, the log opens with all that the round before wrote.
void expectEarlierRound(World& world) {
    EXPECT_NE(sessionLog(world).find(world.path("b") + " successfully restored.\n"), std::string::npos);
}

void nothing(World&) {}

struct SealedText {
    const char* name;
    crypto::ChainValue crypto::ChainValues::*chain;
    const char* text;
};
constexpr SealedText kSealedTexts[] = {
    {"Reports/saved", &crypto::ChainValues::IndexIV,
     "/etc/a report\x7F"
     "A\x7F\r\n"},
    {"Checking Schedule/Scheduled Checking Log File", &crypto::ChainValues::LogIV, "a line of the log\r\n"},
};

/// Backups of every kind, backup databases in a folder of their own, and all other sealed files.
void sealEverything(World& world) {
    fs::create_directories(world.data("elsewhere"));
    world.set(settings::key::kBackupSameAsDatabase, "0");
    world.set(settings::key::kBackupDatabaseFolder, world.data("elsewhere"));
    world.write("c", recordedContent("c"));
    world.add({"c"});
    world.add({"c"}, "other");
    world.set(settings::key::kEncryptBackups, std::string(kPlain));
    world.write("open", "for everybody\n");
    world.create("plain");
    world.add({"open"}, "plain");
    world.set(settings::key::kEncryptBackups, std::string(kSealed));
    const crypto::Session& session = world.vault().session;
    for (const SealedText& file : kSealedTexts)
        crypto::sealFile(world.vault().working, file.text, world.data(file.name), session.key,
                         session.chains.*file.chain);
}
Claim changePassword(World& world) {
    const auto outcome = world.changePassword(std::string(kNewPassword), {world.data("Reports/saved")});
    return claimOf(world, outcome.result == core::PasswordChangeResult::Changed);
}
bool isPasswordChanged(World& world) {
    return world.vault().session.key.equals(crypto::SessionKey(kNewPassword));
}
void expectSealedByThePassword(World& world) {
    const crypto::Session& session = world.vault().session;
    for (const SealedText& file : kSealedTexts) {
        EXPECT_EQ(crypto::unsealText(world.machine.files, world.data(file.name), session.key,
                                     session.chains.*file.chain, crypto::kUnsealBackupFolder)
                      .view(),
                  file.text);
    }
    world.write("open", "spoilt");
    const auto records = world.records("plain");
    ASSERT_EQ(records.size(), 1U);
    EXPECT_TRUE(files::FileRestore(world.vault(), world.context())
                    .restoreFile(records[0], RestoreChoice::DeleteChangedFile)
                    .restored);
    EXPECT_EQ(world.read("open"), "for everybody\n");
}

constexpr Scenario kScenarios[] = {
    {"create", kSealed, Files::Stay, nothing, create, isCreated},
    {"add", kSealed, Files::Stay, writeNew, add, isAdded},
    {"addPlain", kPlain, Files::Stay, writeNew, add, isAdded},
    {"addLocation", kSealed, Files::Stay, writeNew, addLocation, isAdded},
    {"updateAll", kSealed, Files::Stay, changeBoth, updateAll, isUpdated},
    {"updateAllPlain", kPlain, Files::Stay, changeBoth, updateAll, isUpdated},
    {"updateOneByOne", kSealed, Files::Stay, changeBoth, updateOneByOne, isUpdated},
    {"updateRecords", kSealed, Files::Stay, changeBoth, updateRecords, areRecordsUpdated},
    {"restore", kSealed, Files::Restored, changeBoth, restoreBoth, areRestored},
    {"restorePlain", kPlain, Files::Restored, changeBoth, restoreBoth, areRestored},
    {"restoreAndMove", kSealed, Files::RestoredAndMoved, changeBoth, restoreAndMove, areRestored},
    {"restoreLost", kSealed, Files::Restored, loseOne, restoreLost, isLostOneBack},
    {"delete", kSealed, Files::Stay, nothing, deleteDatabase, isDeleted},
    {"recover", kSealed, Files::Stay, damageDatabase, recover, isRecovered},
    {"stamp", kSealed, Files::Stay, nothing, stamp, isStamped},
    {"password", kSealed, Files::Stay, sealEverything, changePassword, isPasswordChanged,
     expectSealedByThePassword},
    {"createBaseline", kSealed, Files::Stay, limitWalks, createBaseline, isBaselineCreated},
    {"checkBaseline", kSealed, Files::Stay, prepareBaseline, checkBaseline, isBaselineChecked},
    {"unattended", kSealed, Files::RestoredAndMoved, prepareRound, visitUnattended, isVisited,
     expectEarlierRound},
    {"createSystem", kSealed, Files::Stay, limitWalks, createSystem, isSystemCreated},
    {"checkSystem", kSealed, Files::Stay, prepareSystem, checkSystem, isBaselineChecked},
    {"deleteBaseline", kSealed, Files::Stay, prepareBaseline, deleteBaseline, isBaselineDeleted},
};

void writeSchedule(World& world) {
    std::string lines;
    for (const char* name : {"db", "other"})
        lines += world.databasePath(name) +
                 "\x7F"
                 "1\x7F"
                 "0\x7F\r\n";
    crypto::sealFile(world.vault().working, lines, schedule::ScheduleList(world.vault()).path(),
                     world.vault().session.key, world.vault().session.chains.ScheduleIV);
}

}  // namespace

std::span<const Scenario> scenarios() {
    return kScenarios;
}

const Scenario& scenarioOf(std::string_view name) {
    const auto* const found = std::find_if(std::begin(kScenarios), std::end(kScenarios),
                                           [&](const Scenario& scenario) { return scenario.name == name; });
    if (found == std::end(kScenarios)) throw std::invalid_argument(std::string(name));
    return *found;
}

std::string recordedContent(std::string_view name) {
    std::string content;
    for (std::size_t i = 0; i < 20 + name.size(); ++i)
        content += "the secret of " + std::string(name) + "\n";
    return content;
}

void prepareWorld(World& world, const Scenario& scenario) {
    world.install();
    world.start();
    world.set(settings::key::kEncryptBackups, std::string(scenario.backups));
    for (const char* name : {"kept", "a", "b"})
        world.write(name, recordedContent(name));
    for (const char* name : {"db", "other"})
        world.create(name);
    world.add({"kept", "a", "b"});
    world.add({"kept"}, "other");
    writeSchedule(world);
    scenario.prepare(world);
    world.stop();
}

}  // namespace corvalence::test
