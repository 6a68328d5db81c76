#include "aftermath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "schedule/schedule_list.h"
#include "store/backup_database.h"
#include "store/database_index.h"

namespace corvalence::test {

namespace {

namespace fs = std::filesystem;
using files::Reaction;

std::map<std::string, std::string> contentsBelow(const std::string& folder) {
    std::map<std::string, std::string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            contents[entry.path().generic_string().substr(folder.size())] =
                readWholeFile(entry.path().string());
    }
    return contents;
}

bool hasMoved(const World& world, const std::string& content) {
    const auto moved = contentsBelow(world.data("Changed Files/"));
    return std::any_of(moved.begin(), moved.end(), [&](const auto& file) { return file.second == content; });
}

void expectClean(const World& world, const Scenario& scenario) {
    EXPECT_EQ(fs::file_size(world.data("Working Copies")), 0U);
    // Paths of recorded files stand in sealed files only, and so does what sealed backups hold.
    EXPECT_TRUE(world.leftovers(world.path("kept")).empty()) << world.leftovers(world.path("kept"))[0];
    if (scenario.backups == "N") {
        EXPECT_TRUE(world.leftovers("the secret of").empty()) << world.leftovers("the secret of")[0];
    }
}

int expectDatabasesWhole(World& world) {
    int recovered = 0;
    const auto listed = store::DatabaseIndex(world.vault()).records();
    EXPECT_GE(listed.size(), 1U);
    for (const store::IndexRecord& record : listed) {
        const std::string name(world.platform.paths.fileName(record.path));
        const store::OpenResult result = world.open(name);
        EXPECT_TRUE(result == store::OpenResult::Opened || result == store::OpenResult::Restored)
            << name << ": " << world.machine.ui.transcript();
        if (result == store::OpenResult::Restored) ++recovered;
        const std::string backup =
            store::backupDatabasePath(record.path, world.configuration(), world.platform.paths);
        EXPECT_TRUE(readWholeFile(record.path) == readWholeFile(backup)) << name;
        if (record.kind != store::DatabaseKind::Numbered) continue;  // lists no files
        const std::size_t atLeast = name == "db" ? 3 : name == "other" ? 1 : 0;
        EXPECT_GE(world.records(name).size(), atLeast) << name;
    }
    return recovered;
}

void expectFilesKept(const World& world, const Stage& stage, const Scenario& scenario) {
    const auto now = contentsBelow(world.path(""));
    for (const auto& [name, content] : stage.before()) {
        const auto found = now.find(name);
        if (found != now.end() && found->second == content) continue;
        EXPECT_NE(scenario.files, Files::Stay) << name;
        EXPECT_TRUE(found == now.end() || found->second == recordedContent(name)) << name;
        const bool mayGo = scenario.files == Files::Restored && found != now.end();
        EXPECT_TRUE(mayGo || hasMoved(world, content)) << name << " is nowhere";
    }
    for (const auto& [name, content] : now) {
        EXPECT_TRUE(stage.before().contains(name) || content == recordedContent(name)) << name;
    }
}

void expectBackupRestores(World& world, const std::string& name, std::string_view database) {
    world.write(name, "spoilt");
    const auto records = world.records(database);
    const auto record = std::find_if(records.begin(), records.end(), [&](const files::FileRecord& candidate) {
        return candidate.path == world.path(name);
    });
    ASSERT_NE(record, records.end()) << name;
    const auto result = files::FileRestore(world.vault(), world.context())
                            .restoreFile(*record, files::RestoreChoice::DeleteChangedFile);
    EXPECT_TRUE(result.restored) << result.message;
    EXPECT_EQ(world.read(name), recordedContent(name));
}

/// A record and its backup go together whatever an update was ended at, unless it was to leave the backups.
void expectEveryBackupServes(World& world, const Scenario& scenario) {
    if (scenario.name == "updateRecords") return;
    for (const files::FileRecord& record : world.records()) {
        const auto result = files::FileRestore(world.vault(), world.context())
                                .restoreFile(record, files::RestoreChoice::DeleteChangedFile);
        EXPECT_TRUE(result.restored) << result.message;
    }
    EXPECT_EQ(world.check().counts().changed, 0U);
}

void expectWorkGoesOn(World& world, std::string_view database) {
    world.write("later", "written later");
    EXPECT_EQ(world.add({"later"}, database).added, 1U);
    world.write("later", "changed later");
    world.check({.reactions = {Reaction::UpdateWithBackup}}, database);
    const CheckOutcome outcome = world.check({}, database);
    EXPECT_EQ(outcome.counts().changed, 0U);
    expectBackupRestores(world, "kept", database);
    world.write("later", "spoilt");
    world.check({.reactions = {Reaction::Restore}, .restore = files::RestoreChoice::DeleteChangedFile},
                database);
    EXPECT_EQ(world.read("later"), "changed later");
    EXPECT_TRUE(world.create("one more")) << world.machine.ui.transcript();
}

}  // namespace

Stage::Stage(const Scenario& scenario) {
    fs::create_directories(folder_);
    {
        World world(folder_);
        prepareWorld(world, scenario);
    }
    before_ = contentsBelow(home_ / "world/files/");
    copyFolder(folder_, kept_);
}

void Stage::reset() const {
    fs::remove_all(fsPath(folder_));
    copyFolder(kept_, folder_);
}

int expectNothingLost(World& world, const Stage& stage, const Scenario& scenario) {
    world.machine.faults.clear();
    world.password.other = kNewPassword;
    world.machine.ui.answers.assign(100, true);
    EXPECT_EQ(world.start(), core::StartResult::Ready) << world.machine.ui.transcript();
    if (testing::Test::HasFailure()) return 0;
    if (scenario.expectHeld != nullptr) scenario.expectHeld(world);
    expectClean(world, scenario);
    const int recovered = expectDatabasesWhole(world);
    expectFilesKept(world, stage, scenario);
    expectBackupRestores(world, "kept", "other");
    const bool isListed = store::DatabaseIndex(world.vault()).findExact(world.databasePath()).has_value();
    if (isListed) expectEveryBackupServes(world, scenario);
    expectWorkGoesOn(world, isListed ? "db" : "other");
    expectClean(world, scenario);
    return recovered;
}

}  // namespace corvalence::test
