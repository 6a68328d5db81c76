#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/console_text.h"
#include "console.h"
#include "machine.h"

namespace corvalence::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

/// A console with a directory structure database "dirs" of its files.
class BaselineConsole : public testing::Test, public Console {
  protected:
    BaselineConsole() {
        for (const char* name : {"a/1", "b", "c"})
            write(name, "x");
        done({"init"});
        done({"config", "set", "walk-roots", path("")});
        made = done({"create", "directory-structure", "dirs"});
    }
    Outcome made;
};

TEST_F(BaselineConsole, CreatesChecksAndShowsItsReport) {
    EXPECT_THAT(made.out,
                HasSubstr(home(native("Databases/dirs")) + " created.\n3 files.\n1 directories.\n"));
    EXPECT_THAT(done({"check", "dirs"}).out, HasSubstr("\n0 Files Added.\n0 Files Removed.\n"));
    EXPECT_THAT(done({"report", "show"}).out,
                HasSubstr("There are no Directory Structure changes to report.\n"));
    write("a/2", "x");
    std::filesystem::remove(path("b"));
    const Outcome text = run({"check", "dirs"});
    EXPECT_EQ(text.code, 1);
    EXPECT_THAT(text.out, StartsWith("File added:   " + path(native("a/2")) +
                                     "\nFile removed:   " + path("b") + "\n\nDatabase: "));
    const Outcome outcome = run({"check", "dirs", "--json"});
    EXPECT_EQ(outcome.code, 1);
    const json check = outcome.json();
    EXPECT_EQ(check.at("kind"), "directory-structure");
    EXPECT_EQ(check.at("counts").at("files_added"), 1);
    EXPECT_EQ(check.at("counts").size(), 10U);
    EXPECT_EQ(check.at("changes"), json::array({{{"code", "A"}, {"path", path(native("a/2"))}},
                                                {{"code", "R"}, {"path", path("b")}}}));
    const Outcome report = done({"report", "show", "directory-structure"});
    EXPECT_THAT(report.out, HasSubstr("Corvalence - Directory Structure Report.\nPage: 1 of 1\n"
                                      "File name\tLocation\tStatus\n2\t" +
                                      path(native("a/")) + "\tFile added.\nb\t"));
    const json shown = done({"report", "show", "--json", "--page", "9"}).json().at("reports")[0];
    EXPECT_EQ(shown.at("changes"), check.at("changes"));
    EXPECT_EQ(shown.at("page"), 1);
    EXPECT_EQ(shown.at("total"), 2);
    EXPECT_TRUE(leftovers().empty());
}

TEST_F(BaselineConsole, SavesReportsAndOpensThemAgain) {
    EXPECT_EQ(run({"report", "show"}).code, 1);
    EXPECT_EQ(run({"report", "save", "mine"}).code, 4);
    write("a/2", "x");
    run({"check", "dirs"});
    const std::string report = done({"report", "show"}).out;
    EXPECT_EQ(done({"report", "save", "mine"}).out, path("mineD") + " saved.\n");
    done({"report", "save", "mine"});  // over itself
    EXPECT_EQ(done({"report", "open", "mineD"}).out, report);
    if (canBeNamed("\xFF")) {
        const auto saved = done({"report", "save", "\xFF", "--json"}).json().at("saved");
        EXPECT_EQ(saved.at(0).at("path_base64"), cli::base64(path("\xFF"
                                                                  "D")));
        const auto exported = done({"log", "export", "\xFFlog", "--json"}).json();
        EXPECT_EQ(exported.at("exported_base64"), cli::base64(path("\xFFlog")));
        EXPECT_THAT(done({"log", "export",
                          "\xFF"
                          "2"})
                        .out,
                    HasSubstr("\\xff2 exported."));
    }
    // Over something else only after a question, and never over a database.
    write("otherD", "not a report");
    EXPECT_EQ(run({"report", "save", "other"}).code, 4);
    EXPECT_EQ(read("otherD"), "not a report");
    done({"--yes", "report", "save", "other"});
    EXPECT_EQ(read("otherD"), read("mineD"));
    EXPECT_EQ(run({"--yes", "report", "save", home("Databases/other")}).code, 0);
    done({"create", "directory-structure", "xD"});
    EXPECT_EQ(run({"--yes", "report", "save", home("Databases/x")}).code, 4);
    // A report of another kind, or of nobody.
    EXPECT_EQ(run({"report", "open", "mine"}).code, 2);
    EXPECT_EQ(run({"report", "open", "noneD"}).code, 4);
    write("brokenD", "12345678901234567");
    EXPECT_THAT(run({"report", "open", "brokenD"}).err,
                HasSubstr("Report file access error.\n\nCorvalence support reference code: RAE"));
    write("foreignD", std::string(64, 'x'));
    const Outcome foreign = run({"report", "open", "foreignD"});
    EXPECT_EQ(foreign.code, 4);
    EXPECT_THAT(foreign.out, HasSubstr("are no records of this kind."));
    EXPECT_EQ(run({"report", "show", "nothing"}).code, 2);
}

TEST_F(BaselineConsole, TellsWhatItCouldNotRecordOrCompare) {
    const Outcome odd = run({"config", "set", "walk-roots", path("") + "\n" + path("none")});
    EXPECT_EQ(odd.code, 2) << "a folder that is not there";
    write("d/1/2/3/4/5/6/7/8/9/0/last", "x");
    write("e/behind", "x");
    const Outcome created = run({"create", "directory-structure", "deep"});
    EXPECT_EQ(created.code, 1);
    EXPECT_THAT(created.out, HasSubstr("1 folders and 0 files in the folders above it were left out"));
    const json remarks = run({"check", "deep", "--json"}).json().at("remarks");
    EXPECT_EQ(remarks[0].at("name"), "ended");
    EXPECT_EQ(remarks[0].at("fault"), true);
    const Outcome left = run({"check", "dirs"});
    EXPECT_EQ(left.code, 1);
    EXPECT_THAT(left.out, HasSubstr("1 files behind the last line of the database were not compared.\n"));
}

TEST_F(BaselineConsole, GivesItsDetailsAndIsListedCancelledAndDeleted) {
    const json details = done({"details", "dirs", "--json"}).json();
    EXPECT_EQ(details.at("files"), 3);
    EXPECT_EQ(details.at("directories"), 1);
    EXPECT_EQ(details.at("last_check"), nullptr);
    EXPECT_EQ(done({"databases", "--json"}).json().at("databases")[0].at("state"), "ok");
    EXPECT_EQ(run({"files", "dirs"}).code, 2);
    EXPECT_EQ(run({"add", "dirs", "b"}).code, 2);
    for (const std::uint64_t at : {3U, 6U}) {
        process.cancelAt(at);
        const Outcome creation = run({"create", "directory-structure", "more"});
        process.cancelAt(at);
        const Outcome check = run({"check", "dirs"});
        process.cancelAt(kNever);
        EXPECT_EQ(creation.code, 5) << at << creation.err;
        EXPECT_EQ(check.code, 5) << at << check.err;
        EXPECT_FALSE(std::filesystem::exists(home("Databases/more")));
    }
    std::filesystem::remove(home("Databases/dirsa"));
    EXPECT_EQ(run({"databases", "--json"}).json().at("databases")[0].at("state"), "missing");
    EXPECT_EQ(run({"check", "dirs"}).code, 3);
    done({"--yes", "check", "dirs"});
    done({"--yes", "delete", "dirs"});
    EXPECT_TRUE(std::filesystem::is_empty(home("Databases")));
}

}  // namespace
}  // namespace corvalence::test
