#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"
#include "machine.h"

namespace corvalence::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// A console with a Complete System database "all" of its files.
class SystemConsole : public testing::Test, public Console {
  protected:
    SystemConsole() {
        for (const char* name : {"a", "b", "z"})
            write(name, "x");
        services.installed.emplace_back().name = "svc";
        registry.key(platform::RegistryRoot::LocalMachine, "Software").values.emplace_back().name = "x";
        done({"init"});
        done({"config", "set", "walk-roots", path("")});
        made = done({"create", "complete-system", "all", "--backups", "sealed"});
    }
    Outcome made;
};

TEST_F(SystemConsole, CreatesChecksAndShowsAllPages) {
    EXPECT_THAT(made.out,
                HasSubstr("all created [SHA-256].\nfile-contents:\n3 files.\ndirectory-structure:\n"));
    EXPECT_EQ(run({"check", "all"}).code, 0);
    write("b", "changed");
    const Outcome text = run({"check", "all"});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out, HasSubstr("Page: 1 of 5  Corvalence - File Contents Report.\n" + path("b") +
                                    " has been changed!\nWhen added:\nDigest value: "));
    EXPECT_THAT(text.out, HasSubstr("\nNow:\nDigest value: "));
    EXPECT_THAT(text.err, HasSubstr("Use the arrow buttons on the Pagebar to view each report."));
    const json check = run({"check", "all", "--json"}).json();
    EXPECT_EQ(check.at("kind"), "complete-system");
    EXPECT_EQ(check.at("components").size(), 5U);
    EXPECT_EQ(check.at("components")[0].at("changes")[1].at("code"), "new");
    EXPECT_EQ(check.at("components")[1].at("counts").at("files_added"), 0);
    const json some = run({"check", "all", "--components", "services,registry", "--json"}).json();
    EXPECT_EQ(some.at("first_page"), 4);
    EXPECT_EQ(done({"report", "show", "--json"}).json().at("reports").size(), 5U);
    EXPECT_EQ(done({"databases", "--json"}).json().at("databases")[0].at("kind"), "complete-system");
    EXPECT_EQ(done({"details", "all", "--json"}).json().at("components").size(), 4U);
    EXPECT_THAT(done({"restore", "all", "b"}).out, HasSubstr("successfully restored."));
    EXPECT_EQ(read("b"), "x");
    EXPECT_TRUE(leftovers().empty());
}

TEST_F(SystemConsole, RefusesWhatDoesNotGoWithItAndLeavesNothingWhenCancelled) {
    EXPECT_EQ(run({"check", "all", "--on-change", "update"}).code, 2);
    done({"create", "file-contents", "files"});
    EXPECT_EQ(run({"check", "files", "--components", "services"}).code, 2);
    process.cancelAt(9);
    EXPECT_EQ(run({"create", "complete-system", "more"}).code, 5);
    process.cancelAt(12);
    EXPECT_EQ(run({"check", "all"}).code, 5);
    process.cancelAt(kNever);
    EXPECT_EQ(run({"report", "show"}).code, 1) << "no report is left";
    EXPECT_EQ(done({"databases", "--json"}).json().at("databases").size(), 2U);
    done({"--yes", "delete", "all"});
    EXPECT_TRUE(leftovers().empty());
}

/// Unattended checks of what was made, each ended by a signal.
class WatchedSystem : public SystemConsole {
  protected:
    WatchedSystem() {
        done({"schedule", "add", "all"});
        done({"schedule", "interval", "00:00:02"});
    }
    /// Goes on until so many questions whether there was a signal.
    Outcome runUntil(std::uint64_t questions) {
        process.cancelAt(questions);
        Outcome outcome = run({"run"});
        process.cancelAt(kNever);
        return outcome;
    }
};

TEST_F(WatchedSystem, ChecksAgainAndAgainAndLogsEach) {
    write("b", "changed");
    const Outcome outcome = runUntil(400);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const std::string line =
        "  Database: " + home(native("Databases/all")) + " checked: differences were found.\n";
    const std::size_t first = outcome.out.find(line);
    ASSERT_NE(first, std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(line, first + 1), std::string::npos) << outcome.out;
    EXPECT_THAT(done({"log", "show"}).out, HasSubstr(path("b") + " has been changed!"));
    EXPECT_EQ(read("b"), "changed");
    done({"schedule", "reaction", "continuous", "--auto-restore", "delete"});
    runUntil(200);
    EXPECT_EQ(read("b"), "x");
    EXPECT_THAT(done({"log", "show"}).out, HasSubstr("Changed file deleted."));
    EXPECT_TRUE(leftovers().empty());
}

TEST_F(WatchedSystem, NeedsAnIntervalAndTellsADatabaseThatIsGone) {
    done({"schedule", "interval", "00:00:00"});
    EXPECT_EQ(run({"run"}).code, 2);
    done({"schedule", "interval", "00:00:01"});
    EXPECT_EQ(run({"run", "--json"}).code, 2);
    std::filesystem::remove(fsPath(home("Databases/all")));
    EXPECT_THAT(runUntil(60).out, HasSubstr("Databases" + native("/all") + " does not exist!\n"));
    EXPECT_THAT(done({"log", "show"}).out, HasSubstr(native("Databases/all") + " does not exist!"));
}

}  // namespace
}  // namespace corvalence::test
