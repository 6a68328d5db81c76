#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "baseline_world.h"
#include "crypto/sealed_file.h"
#include "schedule/schedule_list.h"
#include "schedule/schedule_round.h"
#include "scripted_mail.h"
#include "store/database_index.h"

namespace corvalence::test {
namespace {

using schedule::Timer;
using schedule::WorkKind;
using schedule::WorkResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// A world with a schedule of databases, visited by hand; tells what the worker told.
class Worker : public testing::Test,
               public BaselineWorld,
               public schedule::WorkListener,
               public schedule::MailWaiting {
  protected:
    Worker() : BaselineWorld(store::DatabaseKind::DirectoryStructure) {
        for (const char* name : {"a", "b", "c"})
            world.write(name, name);
        world.create();
        world.add({"a", "b", "c"});
        create("dirs");
        schedule("db");
        schedule("dirs");
    }
    void schedule(const std::string& name) {
        schedule::ScheduleList(world.vault()).add(world.databasePath(name));
    }

    void begins(const std::string& database, WorkKind of) override {
        told.push_back(std::string(world.platform.paths.fileName(database)) + " " +
                       std::to_string(static_cast<int>(of)));
    }
    void firstDifference() override { told.push_back("differs"); }
    void progress(std::uint32_t) override {}
    void needsRestart() override { told.push_back("restart"); }
    void ends(WorkResult result) override { results.push_back(result); }
    bool goOn() override { return false; }

    /// One round; the text that it added to the session log.
    std::string visit(Timer tick = Timer::ContinuousTick, const schedule::PromptedCheck& prompted = {}) {
        told.clear();
        results.clear();
        const std::size_t before = session().size();
        const schedule::WorkContext context{world.vault(),
                                            machine,
                                            *this,
                                            mail,
                                            *this,
                                            [this](const std::string& title) { return world.platform.ui.openProgress(title); }};
        schedule::visitSchedule(context, tick, prompted, [this] { return goesOn; });
        return session().substr(before);
    }
    std::string session() {
        const schedule::LogFiles logs(world.vault());
        return std::string(crypto::unsealText(world.platform.files, logs.path(schedule::LogKind::Session),
                                              world.vault().session.key, world.vault().session.chains.LogIV,
                                              {"MFRDN", crypto::EndRule::textTail()})
                               .view());
    }

    std::shared_ptr<ScriptedMail> transport = std::make_shared<ScriptedMail>();
    schedule::MailThread mail{transport};
    std::vector<std::string> told;
    std::vector<WorkResult> results;
    bool goesOn = true;
};

TEST_F(Worker, LogsWhatItFindsWarnsOnceAndChangesNothing) {
    const std::string quiet = visit();
    EXPECT_THAT(told, ElementsAre("db 0", "dirs 1"));
    EXPECT_THAT(results, ElementsAre(WorkResult::Same, WorkResult::Same));
    EXPECT_THAT(quiet, HasSubstr("Database: " + world.databasePath() + " checked.\r\n"));
    EXPECT_THAT(quiet, HasSubstr("\r\n0 Files changed. \r\n"));
    EXPECT_THAT(quiet, HasSubstr("Email notification turned off.\r\n\r\n____"));

    world.write("a", "changed");
    world.write("b", "changed");
    world.write("aa", "new");
    world.machine.sound.resources.clear();
    const std::string found = visit();
    EXPECT_THAT(told, ElementsAre("db 0", "differs", "dirs 1", "differs"));
    EXPECT_THAT(world.machine.sound.resources, ElementsAre("rml", "rml")) << "once a check";
    EXPECT_THAT(found, HasSubstr(world.path("a") + " has been changed!\r\nFile name: a\r\n"));
    EXPECT_THAT(found, HasSubstr("Auto restore turned off.\r\n"));
    EXPECT_THAT(found, HasSubstr("\r\n2 Files changed. \r\n"));
    EXPECT_THAT(found, HasSubstr("File added:   " + world.path("aa") + "\r\n"));
    EXPECT_EQ(world.read("a"), "changed");
    EXPECT_TRUE(store::DatabaseIndex(world.vault()).findExact(world.databasePath("dirs"))->lastCheck);
    EXPECT_TRUE(world.machine.ui.questions.empty()) << "nobody is asked";
    EXPECT_TRUE(world.leftovers("has been changed!").empty());
}

TEST_F(Worker, RestoresWhereTheSettingsSaySo) {
    world.set(settings::key::kAutoRestore, "1");
    world.set(settings::key::kAutoRestoreMoves, "0");
    world.write("a", "changed");
    EXPECT_THAT(visit(), HasSubstr("Auto restore enabled.\r\n" + world.path("a") +
                                   " successfully restored.\r\nChanged file deleted.\r\n\r\n"));
    EXPECT_EQ(world.read("a"), "a");
    world.write("b", "changed");
    const std::string container = world.data("Backup Files/Backup File 1");
    writeWholeFile(container, "");
    const std::string failed = visit();
    EXPECT_THAT(failed, HasSubstr(world.path("b") + " could not be restored.\r\nReason: "));
    EXPECT_EQ(world.read("b"), "changed");
}

TEST_F(Worker, TellsDatabasesThatAreGoneOrAlteredAndGoesOn) {
    std::string sealed = readWholeFile(world.databasePath("dirsd"));
    writeWholeFile(world.databasePath("dirsd"), sealed + std::string(16, 'x'));
    std::filesystem::remove(fsPath(world.databasePath()));
    schedule("unknown");
    const std::string found = visit();
    EXPECT_THAT(results, ElementsAre(WorkResult::Missing, WorkResult::Altered, WorkResult::Missing));
    EXPECT_THAT(found, HasSubstr("Database: " + world.databasePath() + " does not exist!\r\n"));
    EXPECT_THAT(found,
                HasSubstr(world.databasePath("dirs") + " has been changed and cannot be checked!\r\n"));
    // One that the index no longer has, and a list that is gone.
    writeWholeFile(world.databasePath("unknown"), "x");
    visit();
    EXPECT_EQ(results.back(), WorkResult::Altered);
    std::filesystem::remove(fsPath(schedule::ScheduleList(world.vault()).path()));
    EXPECT_EQ(visit(), "");
    EXPECT_FALSE(world.machine.ui.messages.empty());
}

TEST_F(Worker, LogsACancelledCheckAndStopsTheRound) {
    world.machine.ui.meanwhile = [this] { goesOn = false; };
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 2;
    const std::string found = visit();
    EXPECT_THAT(results, ElementsAre(WorkResult::Cancelled));
    EXPECT_THAT(found, HasSubstr("[ CANCELLED MID CHECK ]\r\n"));
    EXPECT_THAT(found, HasSubstr(" Files checked. \r\n"));
    EXPECT_THAT(found, HasSubstr("\r\n____"));
}

TEST_F(Worker, TellsDifferencesThoughTheCheckFailsBehindThem) {
    world.write("a", "changed");
    world.set(settings::key::kEmailEnabled, "1");
    world.set(settings::key::kEmailOnlyChanges, "1");
    // The stamp at the end of the check has no place for its working file.
    const std::string taken = world.data("Backup Files/Database Index") + ".123456789s";
    writeWholeFile(taken, "in the way");
    writeWholeFile(world.data("Backup Files/Database Index123456789s"), "in the way");
    EXPECT_THAT(visit(), HasSubstr("Email notification enabled.\r\n"));
    EXPECT_EQ(results.front(), WorkResult::Differs);
    EXPECT_FALSE(store::DatabaseIndex(world.vault()).findExact(world.databasePath())->lastCheck);
}

TEST_F(Worker, AsksAtAStandardTickAboutFilesAlone) {
    std::vector<std::string> prompted;
    visit(Timer::StandardTick, [&](const std::string& database) { prompted.push_back(database); });
    EXPECT_THAT(prompted, ElementsAre(world.databasePath()));
    EXPECT_THAT(told, ElementsAre("dirs 1"));
    visit(Timer::BackgroundTick, [&](const std::string& database) { prompted.push_back(database); });
    EXPECT_EQ(prompted.size(), 1U);
    EXPECT_EQ(told.size(), 2U);
}

TEST_F(Worker, GoesOnWithoutItsLogAndWhereAFileIsInTheWay) {
    for (std::uint64_t operation = 1; operation < 15; ++operation) {
        world.machine.faults.failAt(operation);
        EXPECT_NO_THROW(visit()) << operation;
        world.machine.faults.clear();
        EXPECT_EQ(told.front(), "db 0") << operation;
    }
    visit();
    EXPECT_THAT(results, ElementsAre(WorkResult::Same, WorkResult::Same));
    // What stands at a working file's name is not this program's to remove.
    const std::string taken = world.databasePath("db.123456789z");
    writeWholeFile(taken, "the user's");
    const std::string found = visit();
    EXPECT_THAT(results, ElementsAre(WorkResult::Incomplete, WorkResult::Same)) << "the others are checked";
    EXPECT_THAT(told, Not(testing::Contains("restart")));
    EXPECT_EQ(readWholeFile(taken), "the user's");
    EXPECT_THAT(found, HasSubstr("Couldn't check "));
}

TEST_F(Worker, MailsTheTextOfACheckAndNotThatOfAnother) {
    world.set(settings::key::kEmailEnabled, "1");
    world.set(settings::key::kEmailOnlyChanges, "1");
    world.set(settings::key::kEmailEncrypted, "0");
    world.set(settings::key::kEmailRecipient, "admin@example.org");
    EXPECT_THAT(visit(), HasSubstr("Email notification enabled only for modifications.\r\n"));
    EXPECT_FALSE(transport->message);
    world.write("aa", "new");
    EXPECT_THAT(visit(), HasSubstr("Sending plaintext Email.\r\n"));
    ASSERT_TRUE(transport->message);
    EXPECT_THAT(transport->message->body, HasSubstr("File added:   " + world.path("aa")));
    EXPECT_THAT(transport->message->body, Not(HasSubstr(world.databasePath() + " checked.")));
}

}  // namespace
}  // namespace corvalence::test
