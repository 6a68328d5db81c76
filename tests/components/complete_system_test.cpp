#include "components/complete_system.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "baseline_world.h"
#include "failure_of.h"
#include "files/backup_room.h"
#include "reports/report_writer.h"
#include "store/component_files.h"
#include "store/component_index.h"
#include "store/database_files.h"
#include "store/database_index.h"

namespace corvalence::test {
namespace {

using components::SystemChecked;
using components::SystemCreated;
using reports::ReportKind;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::array kAll = {ReportKind::FileContents, ReportKind::DirectoryStructure,
                             ReportKind::Permissions, ReportKind::Registry, ReportKind::Services};

class CompleteSystem : public testing::Test, public BaselineWorld {
  protected:
    CompleteSystem() : BaselineWorld(store::DatabaseKind::DirectoryStructure) {
        for (const char* name : {"a/1", "a/2", "b"})
            world.write(name, name);
        registry.key(platform::RegistryRoot::LocalMachine, "Software").values.push_back(textValue("x", "1"));
        platform::Service service;
        service.name = "svc";
        service.displayName = "Service";
        services.installed.push_back(service);
    }

    static platform::RegistryValue textValue(const std::string& name, const std::string& text) {
        platform::RegistryValue value;
        value.name = name;
        value.type = 1;
        value.text = text;
        return value;
    }

    SystemCreated make(const std::string& name = "db",
                       files::AddBackups backups = files::AddBackups::Sealed) {
        store::CreationRequest request;
        request.location = world.data("Databases");
        request.name = name;
        request.digest = crypto::DigestCode::Sha256;
        return components::createCompleteSystem(world.vault(), machine, request, {backups, true});
    }
    std::optional<SystemChecked> checkSystem(std::span<const ReportKind> selected = kAll) {
        const auto opened = world.open("db");
        if (opened != store::OpenResult::Opened && opened != store::OpenResult::Restored) return std::nullopt;
        return components::checkCompleteSystem(world.vault(), machine, world.context(), selected);
    }
    std::string reportFile(ReportKind of) { return reports::reportPath(world.configuration(), of); }
    bool hasReport(ReportKind of) { return std::filesystem::exists(fsPath(reportFile(of))); }
    std::vector<std::string> linesOf(ReportKind of) {
        std::vector<std::string> texts;
        const auto report = reports::ReportFile::open(world.vault(), reportFile(of));
        const auto renderer = components::makeRenderer(of, world.platform);
        if (report) {
            for (const std::string_view line : report->lines())
                texts.push_back(shown(renderer->fields(texts.size(), line).front().value));
        }
        return texts;
    }
    std::size_t filesIn(const std::string& folder) const {
        const std::filesystem::directory_iterator all(fsPath(world.data(folder)));
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }
    std::string file(const std::string& name) const { return world.data("Databases/" + name); }
    void damage(const std::string& name) {
        std::string bytes = readWholeFile(file(name));
        if (bytes.empty()) bytes.assign(16, 'x');
        bytes[bytes.size() / 2] ^= 1;
        writeWholeFile(file(name), bytes);
    }
};

TEST_F(CompleteSystem, TellsWhatChangedOfEachComponentAndNothingOfAQuietMachine) {
    const SystemCreated created = make();
    ASSERT_TRUE(created.database);
    ASSERT_EQ(created.components.size(), kAll.size());
    for (std::size_t at = 0; at < kAll.size(); ++at)
        EXPECT_EQ(created.components[at].component, kAll[at]);
    EXPECT_EQ(world.records("db").size(), 3U);
    EXPECT_TRUE(store::isCompleteSystem(world.vault(), created.database->record));
    for (int round = 0; round < 2; ++round) {
        const auto quiet = checkSystem();
        ASSERT_TRUE(quiet);
        EXPECT_FALSE(quiet->differs());
        EXPECT_TRUE(quiet->isWhole());
    }
    world.write("b", "changed");
    world.write("a/3", "new");
    remove("a/1");
    registry.key(platform::RegistryRoot::LocalMachine, "Software").values[0].text = "2";
    services.installed[0].displayName = "Another";
    const auto checked = checkSystem();
    EXPECT_EQ(checked->components.size(), kAll.size());
    EXPECT_EQ(checked->firstPage(), 1U);
    EXPECT_EQ(components::systemPageCaption(1), "Page: 1 of 5");
    EXPECT_THAT(linesOf(ReportKind::FileContents), ElementsAre("old", "new"));
    EXPECT_THAT(linesOf(ReportKind::DirectoryStructure), ElementsAre("R", "A"));
    EXPECT_FALSE(linesOf(ReportKind::Registry).empty());
    EXPECT_EQ(linesOf(ReportKind::Services).size(), 2U);
    // What is gone counts as not checked and has no line.
    EXPECT_EQ(checked->components[0].outcome.remarks.back().name, "unchecked");
    EXPECT_FALSE(checked->isWhole());
    EXPECT_TRUE(world.context().record.lastCheck);
    // The database is as it was: the next check tells the same.
    EXPECT_THAT((checkSystem(), linesOf(ReportKind::FileContents)), ElementsAre("old", "new"));
    ASSERT_EQ(world.open("db"), store::OpenResult::Opened);
    EXPECT_TRUE(world.restore("b").restored);
    EXPECT_EQ(world.read("b"), "b");
    EXPECT_THAT(world.leftovers(), IsEmpty());
}

TEST_F(CompleteSystem, ShowsOneWindowForAllComponentsAndCountersThatGrowDuringACheck) {
    ScriptedUserInterface& ui = world.machine.ui;
    ui.progressTitles.clear();
    make();
    EXPECT_THAT(ui.progressTitles,
                ElementsAre("Searching...", "Creating Complete System Database: " + file("db")));
    EXPECT_GE(ui.mostRemaining, 2U) << "files that are still to be added";

    world.write("a/1", "changed");
    remove("a/2");
    registry.key(platform::RegistryRoot::LocalMachine, "Software").values[0].text = "2";
    std::map<std::string, std::uint64_t> seen;  // the most of each counter, while work went on
    ui.meanwhile = [&] {
        if (ui.counting == nullptr) return;
        for (const auto& count : ui.counting->counts())
            seen[std::string(count.text)] = std::max(seen[std::string(count.text)], count.count);
    };
    ui.progressTitles.clear();
    ASSERT_TRUE(checkSystem());
    ui.meanwhile = [] {};
    EXPECT_EQ(ui.progressTitles.back(), "Checking Complete System Database: " + file("db"));
    EXPECT_EQ(seen[" File changed. "], 1U);
    EXPECT_EQ(seen[" Files Removed."], 1U);
    EXPECT_EQ(seen[" Changed Registry Values"], 1U);
    EXPECT_EQ(seen[" Alternate Data Streams removed."], 0U);
    EXPECT_EQ(ui.counting, nullptr) << "a counter outlived its check";
}

TEST_F(CompleteSystem, ShowsTheOldAndTheNewRecordOfAChangedFile) {
    make("db", files::AddBackups::None);
    world.write("b", "longer than before");
    checkSystem();
    const auto report = reports::ReportFile::open(world.vault(), reportFile(ReportKind::FileContents));
    const auto renderer = components::makeRenderer(ReportKind::FileContents, world.platform);
    ASSERT_EQ(report->lines().size(), 2U);
    const auto then = *renderer->columns(report->lines()[0]);
    const auto now = *renderer->columns(report->lines()[1]);
    EXPECT_EQ(then.size(), reports::reportRow(ReportKind::FileContents).columns.size());
    EXPECT_EQ(then[0], "b");
    EXPECT_EQ(then[2], "1");
    EXPECT_EQ(now[2], "18");
    EXPECT_EQ(now[1].size(), 64U);
    EXPECT_NE(then[1], now[1]);
    EXPECT_TRUE(renderer->beginsRecord(0, report->lines()[0]));
    EXPECT_FALSE(renderer->beginsRecord(1, report->lines()[1]));
    EXPECT_FALSE(renderer->columns("no record"));
}

TEST_F(CompleteSystem, ChecksWhatIsSelectedAndLeavesTheOtherReports) {
    make();
    world.write("b", "changed");
    checkSystem();
    world.write("b", "b");
    constexpr std::array kServices = {ReportKind::Services};
    const auto checked = checkSystem(kServices);
    EXPECT_EQ(checked->firstPage(), 5U);
    EXPECT_EQ(checked->components.size(), 1U);
    EXPECT_THAT(linesOf(ReportKind::FileContents), ElementsAre("old", "new")) << "the earlier result";
    EXPECT_EQ(checkSystem({})->firstPage(), 0U);
}

TEST_F(CompleteSystem, ChecksTheOtherComponentsWhereOneFails) {
    make();
    checkSystem();
    world.write("b", "changed");
    services.installed[0].displayName = "Another";
    writeWholeFile(reportFile(ReportKind::DirectoryStructure) + "123456789s", "in the way");
    const auto checked = checkSystem();
    EXPECT_EQ(checked->components.size(), kAll.size());
    EXPECT_FALSE(checked->isWhole());
    EXPECT_FALSE(hasReport(ReportKind::DirectoryStructure)) << "not the one of the check before";
    EXPECT_EQ(linesOf(ReportKind::FileContents).size(), 2U);
    EXPECT_EQ(linesOf(ReportKind::Services).size(), 2U);
}

TEST_F(CompleteSystem, LeavesNothingOfACancelledCreationAndNoReportOfACancelledCheck) {
    const std::size_t before = filesIn("Backup Files");
    for (std::uint64_t at = 1; !HasFailure(); ++at) {
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        const SystemCreated created = make();
        if (created.database) break;
        EXPECT_TRUE(created.cancelled) << at;
        EXPECT_EQ(filesIn("Databases"), 0U) << at;
        EXPECT_EQ(filesIn("Backup Files"), std::max<std::size_t>(before, 2)) << at;
        EXPECT_THAT(store::DatabaseIndex(world.vault()).records(), IsEmpty());
        EXPECT_THAT(store::ComponentIndex(world.vault()).records(), IsEmpty());
    }
    for (std::uint64_t at = 1; !HasFailure(); ++at) {
        world.machine.ui.cancelAt.reset();
        checkSystem();
        ASSERT_EQ(world.open("db"), store::OpenResult::Opened);
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        const auto checked = components::checkCompleteSystem(world.vault(), machine, world.context(), kAll);
        if (!checked.cancelled) break;
        for (const ReportKind each : kAll)
            EXPECT_FALSE(hasReport(each)) << at;
    }
}

TEST_F(CompleteSystem, RefusesAMissingOrChangedComponentAndOffersItsBackup) {
    make();
    for (const char* name : {"db", "dbD", "dbDd", "dba", "dbBn", "dbP", "dbR", "dbS"}) {
        for (const bool isGone : {false, true}) {
            isGone ? void(std::filesystem::remove(fsPath(file(name)))) : damage(name);
            EXPECT_FALSE(checkSystem()) << name;
            world.machine.ui.answers = {true};
            EXPECT_TRUE(checkSystem()) << name;
        }
    }
    // Without its list of components it does not pass for a database that never had any.
    std::filesystem::remove(fsPath(store::ComponentIndex(world.vault()).path()));
    EXPECT_TRUE(store::isCompleteSystem(world.vault(), world.context().record));
    EXPECT_FALSE(checkSystem());
    // And a foreign file makes no Complete System of a database that is none.
    ASSERT_TRUE(world.create("plain"));
    writeWholeFile(file("plainD"), "the user's own notes, not sealed");
    EXPECT_EQ(world.open("plain"), store::OpenResult::Opened);
    EXPECT_FALSE(store::isCompleteSystem(world.vault(), world.context().record));
}

TEST_F(CompleteSystem, GoesAlongWithAChangeOfThePasswordAndIsDeletedWhole) {
    make();
    world.write("b", "changed");
    EXPECT_EQ(world.changePassword("another", {}).result, core::PasswordChangeResult::Changed);
    checkSystem();
    EXPECT_THAT(linesOf(ReportKind::FileContents), ElementsAre("old", "new"));
    EXPECT_TRUE(world.restore("b").restored);
    NobodyListens nobody;
    world.machine.ui.answers = {true};
    EXPECT_EQ(store::deleteDatabase(world.vault(), world.context(), nobody), store::DeletionResult::Deleted);
    EXPECT_EQ(filesIn("Databases"), 0U);
    EXPECT_THAT(store::ComponentIndex(world.vault()).records(), IsEmpty());
    EXPECT_TRUE(world.machine.ui.saw(file("db") + ", and its backups successfully deleted."));
}

TEST_F(CompleteSystem, AsksWhereBackupsFindNoRoom) {
    using components::backupQuestion;
    constexpr std::uint64_t kLimit = files::kFatLimit;
    EXPECT_EQ(backupQuestion(kLimit, 0, true), "");
    EXPECT_EQ(backupQuestion(kLimit + 1, kLimit + 1, false), "");
    EXPECT_THAT(
        backupQuestion(kLimit + 1, kLimit, false),
        testing::StartsWith("You do not have enough free disk space to backup all your files.\n\nDo you "
                            "want to add the files to the database without backing up the files ?"));
    EXPECT_THAT(backupQuestion(kLimit + 1, UINT64_MAX, true),
                testing::StartsWith("Your file system does not support files larger than 4GB.\n\nDo you "));
    // The question itself: No makes nothing, Yes makes it without backups.
    std::filesystem::resize_file(fsPath(world.write("large", "x")), kLimit + 1);
    world.machine.status.room = 1000;
    EXPECT_TRUE(make().declined);
    EXPECT_EQ(filesIn("Databases"), 0U);
}

}  // namespace
}  // namespace corvalence::test
