#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::string_view kDigestOfOne = "7692c3ad3540bb803c020b3aee66cd8887123234ea0c6e7143c0add73ff431ed";
constexpr std::string_view kDigestOfThree =
    "8b5b9db0c13db24256c829aa364aa90c6d2eba318b9232a4ab9313b954d3555f";

TEST(DayAtWork, fromTheFirstCommandToTheLast) {
    Console console;
    console.write("hosts", "one");
    console.write("sub/motd", "hello");
    EXPECT_THAT(console.done({"init"}).out, HasSubstr(console.home()));
    EXPECT_EQ(console.done({"create", "file-contents", "db"}).out,
              console.home("Databases/db") + " created [SHA-256].\n");
    EXPECT_EQ(console.done({"add", "db", "--location", "."}).out,
              "2 Files located in " + console.folder.path() + "files successfully added to the database.\n");
    EXPECT_EQ(console.done({"check", "db"}).out,
              "\nChecking Summary.\nDatabase: " + console.home("Databases/db") +
                  "\nChecked: 12:30:05   29.2.2024\nTotal number of files listed: 2\nFiles Checked: 2\n"
                  "Files Unchecked: 0\nFiles Changed: 0\nFiles Identical: 2\n");

    console.write("hosts", "three");
    const Outcome found = console.run({"check", "db"});
    EXPECT_EQ(found.code, 1);
    for (const std::string& line :
         {console.path("hosts") + " has been changed!\n",
          std::string("    Size when added:                3 Bytes. \n"),
          std::string("  * Size now:                       5 Bytes. \n"),
          "    Digest value when added:        " + std::string(kDigestOfOne) +
              "\n  * Digest value now:               " + std::string(kDigestOfThree) + "\n",
          std::string("    Attributes  now:                Archive.\n"),
          std::string("    Database last checked:   12:30:05   29.2.2024\n    Action: Ignored.\n"),
          std::string("Files Changed: 1\nFiles Identical: 1\n")}) {
        EXPECT_THAT(found.out, HasSubstr(line));
    }
    EXPECT_EQ(console.run({"check", "db", "--on-change", "update"}).code, 1);
    EXPECT_EQ(console.run({"check", "db"}).code, 0);

    console.write("hosts", "intruder");
    EXPECT_THAT(console.done({"restore", "db", "hosts"}).out,
                HasSubstr("The changed file was moved to " + console.home("Changed Files/hosts.CHANGED\n")));
    EXPECT_EQ(console.read("hosts"), "three");
    EXPECT_EQ(console.folder.read("home/Changed Files/hosts.CHANGED"), "intruder");

    console.done({"delete", "db", "--yes"});
    EXPECT_THAT(console.done({"databases"}).out, IsEmpty());
    EXPECT_FALSE(console.folder.has("home/Databases/db"));
    EXPECT_THAT(console.leftovers(), IsEmpty());
}

TEST(DayAtWork, analyseShowsTheRowsThatDiffer) {
    Console console;
    const std::string old = std::string(128, 'a') + "port\t22\n" + std::string(130, 'b') + "\x1b[31m";
    console.write("same", old);
    console.write("conf", old);
    console.begin();
    EXPECT_EQ(console.done({"analyse", "db", "same"}).out, "0 of 3 rows differ.\n");
    std::string text = old + std::string(128, 'c');
    text[133] = '8';
    console.write("conf", text);

    const Outcome found = console.run({"analyse", "db", "conf"});
    EXPECT_EQ(found.code, 1);
    EXPECT_EQ(found.err, "");
    const std::string tail = std::string(120, 'b') + "\n";
    const std::string odd = std::string(10, 'b') + ".[31m";
    EXPECT_EQ(found.out, "now\t128\tport.82." + tail + "backup\t128\tport.22." + tail + "now\t256\t" + odd +
                             std::string(113, 'c') + "\nbackup\t256\t" + odd + "\nnow only\t384\t" +
                             std::string(15, 'c') + "\n3 of 4 rows differ.\n");
    const std::string hex = console.run({"analyse", "db", "conf", "--hex"}).out;
    for (const char* line :
         {"now\t80\t70 6F 72 74 09 38 32 0A 62 ", "backup\t80\t70 6F 72 74 09 32 32 0A 62 ",
          " 62\tport.82.bbb", "now only\t120\t63 ", "6 of 13 rows differ.\n"})
        EXPECT_THAT(hex, HasSubstr(line));

    const auto json = console.run({"analyse", "db", "conf", "--json"}).json();
    EXPECT_EQ(json.at("rows")[0].at("offset"), 128);
    EXPECT_THAT(json.at("rows")[0].at("now").get<std::string>(), testing::StartsWith("706f7274093832"));
    EXPECT_EQ(json.at("rows")[2].at("backup"), nullptr);
    for (const auto& [name, value] : {std::pair("size_now", 399),
                                      {"size_backup", 271},
                                      {"row_width", 128},
                                      {"differing", 3},
                                      {"total", 4}})
        EXPECT_EQ(json.at(name), value) << name;

    bool wasCancelled = false;
    int code = 5;
    for (std::uint64_t question = 1; code == 5; ++question) {
        console.process.cancelAt(question);
        const Outcome outcome = console.run({"analyse", "db", "conf", "--json"});
        code = outcome.code;
        wasCancelled |= outcome.json().value("cancelled", false);
    }
    EXPECT_EQ(code, 1);
    EXPECT_TRUE(wasCancelled);
}

TEST(DayAtWork, analyseSaysWhatItCannotCompare) {
    Console console;
    console.write("gone", "1");
    console.begin();
    console.done({"config", "set", "backup-files", "0"});
    console.write("late", "1");
    console.done({"add", "db", "late"});
    std::filesystem::remove(console.path("gone"));
    const Outcome gone = console.run({"analyse", "db", "gone"});
    EXPECT_EQ(gone.code, 1);
    EXPECT_EQ(gone.err, "Couldn't open " + console.path("gone") + "\nReason: FileNotFound.\n");
    EXPECT_EQ(gone.out, "backup only\t0\t1\n1 of 1 rows differ.\n");
    EXPECT_EQ(console.run({"analyse", "db", "gone", "--json"}).json().at("size_now"), nullptr);
    const std::string container = console.home("Backup Files/Backup File 1");
    for (const auto& [file, words] :
         {std::pair("late",
                    "late: File was not backed up.\nTo enable comparison in future, change your "
                    "settings with the 'Configuration' menu.\n"),
          {"other", "other is not listed in "},
          {"gone", "The backup file associated with this database does not exist!"}}) {
        if (file[0] == 'g') std::filesystem::remove(container);
        const Outcome outcome = console.run({"analyse", "db", file});
        EXPECT_EQ(outcome.code, 4);
        EXPECT_EQ(outcome.out, "");
        EXPECT_THAT(outcome.err, HasSubstr(words));
    }
    EXPECT_FALSE(std::filesystem::exists(container));
}

struct ReactionCase {
    std::vector<std::string> options;
    std::string action;
    int nextCheck;
    std::string content;          // of the file afterwards
    std::string contentRestored;  // once it is restored after that
};

class Reactions : public testing::TestWithParam<ReactionCase> {};

TEST_P(Reactions, leaveFileRecordAndBackupAsTheySay) {
    Console console;
    console.write("a", "old");
    console.begin();
    console.write("a", "new");
    std::vector<std::string> check = {"check", "db"};
    check.insert(check.end(), GetParam().options.begin(), GetParam().options.end());
    const Outcome outcome = console.run(check);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out, HasSubstr("    Action: " + GetParam().action));
    EXPECT_EQ(console.read("a"), GetParam().content);
    EXPECT_EQ(console.run({"check", "db"}).code, GetParam().nextCheck);
    const bool canRestore = !GetParam().contentRestored.empty();
    EXPECT_EQ(console.run({"restore", "db", "a"}).code, canRestore ? 0 : 4);
    EXPECT_EQ(console.read("a"), canRestore ? GetParam().contentRestored : GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(
    All, Reactions,
    testing::Values(
        ReactionCase{{}, "Ignored.", 1, "new", "old"},
        ReactionCase{{"--on-change", "ask"}, "Ignored.", 1, "new", "old"},
        ReactionCase{{"--on-change", "ignore"}, "Ignored.", 1, "new", "old"},
        ReactionCase{{"--on-change", "update"}, "Database updated, new backup.", 0, "new", "new"},
        // The record's digest is the new one by then, and the old backup does not have it.
        ReactionCase{
            {"--on-change", "update-keep-backup"}, "Database updated, backup unchanged.", 0, "new", ""},
        ReactionCase{{"--on-change", "restore"}, "Restored.", 0, "old", "old"}));

TEST(DayAtWork, theChangedFileIsMovedOrDeleted) {
    Console console;
    console.write("a", "old");
    console.begin();
    const std::string moved = "home/Changed Files/a.CHANGED";
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"restore", "db", "a"}, {"check", "db", "--on-change", "restore"}}) {
        std::vector<std::string> deleting = command;
        deleting.insert(deleting.end(), {"--changed-file", "delete"});
        console.write("a", "new");
        console.run(deleting);
        EXPECT_EQ(console.read("a"), "old");
        EXPECT_FALSE(console.folder.has(moved));
        console.write("a", "new");
        console.run(command);
        EXPECT_EQ(console.read("a"), "old");
        EXPECT_EQ(console.folder.read(moved), "new");
        std::filesystem::remove(console.folder / moved);
    }
}

TEST(DayAtWork, whatCannotBeReadIsUnchecked) {
    Console console;
    console.write("gone", "1");
    console.write("here", "1");
    console.begin();
    std::filesystem::remove(console.path("gone"));
    const Outcome outcome = console.run({"check", "db"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_THAT(outcome.out,
                HasSubstr("Couldn't check " + console.path("gone") + "  Reason: FileNotFound.\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Files Checked: 1\nFiles Unchecked: 1\nFiles Changed: 0\n"));
    // A restore brings it back.
    EXPECT_THAT(console.done({"restore", "db", "gone"}).out, HasSubstr("was missing"));
    EXPECT_EQ(console.run({"check", "db"}).code, 0);
}

TEST(DayAtWork, addTellsWhatItDidNotTake) {
    Console console;
    console.write("a", "1");
    console.write(".hidden", "1");
    console.write("b", "1");
    const bool hasLink = makeLink("a", console.path("link"));
    console.begin();
    const bool hasPipe = makePipe(console.path("pipe"));
    const Outcome walked = console.run({"add", "db", "--location", console.folder.path()});
    EXPECT_EQ(walked.code, hasPipe ? 1 : 0);
    if (hasPipe) {
        EXPECT_THAT(walked.err,
                    HasSubstr("Couldn't add " + console.path("pipe") + "\nReason: InvalidFile.\n"));
        EXPECT_THAT(walked.out, HasSubstr("1 could not be added.\n"));
    }
    if (hasLink) {
        EXPECT_THAT(walked.out, HasSubstr("1 passed over: symbolic links.\n"));
    }
    for (const char* line : {"1 passed over: names that begin with a full stop.\n",
                             " passed over: the installation's own files.\n"})
        EXPECT_THAT(walked.out, HasSubstr(line));
    EXPECT_THAT(walked.err, Not(HasSubstr("previously listed")));

    const Outcome again = console.run({"add", "db", "a", "none", ".hidden"});
    EXPECT_EQ(again.code, 1);
    EXPECT_THAT(again.err, HasSubstr(console.path("a") + " previously listed.\n"));
    EXPECT_THAT(again.err, HasSubstr("Couldn't add " + console.path("none") + "\nReason: FileNotFound.\n"));
    EXPECT_THAT(again.out,
                HasSubstr("1 File successfully added to the database.\n\n1 File listed previously.\n"));
    EXPECT_THAT(console.run({"add", "db", "--location", ".", "--notify-listed"}).err,
                HasSubstr("previously listed"));
    // Neither a file nor nothing is a folder; the paths beside it are not added either.
    for (const char* none : {"a", "none", ""})
        EXPECT_EQ(console.run({"add", "db", "a", "--location", none}).code, 2) << none;
    EXPECT_THAT(console.run({"add", "db", "none", "--ignore-failed"}).err, Not(HasSubstr("Couldn't add")));

    // What was found is shown before it is added, and nothing is where its backups have no room.
    console.write("late", "12345");
    console.status.room = 4;
    const Outcome refused = console.run({"add", "db", "--location", "."});
    EXPECT_EQ(refused.code, 4);
    EXPECT_THAT(refused.err, HasSubstr("You do not have enough free disk space to add the files.\n"));
    const Outcome found = console.run({"add", "db", "--location", ".", "--backups", "none"});
    EXPECT_THAT(found.err, HasSubstr("Number of files to be added: "));
    EXPECT_THAT(found.err, HasSubstr("\nTotal size of files to be added: 5 Bytes\n"));
}

TEST(DayAtWork, aCancelledAddKeepsWhatIsComplete) {
    Console console;
    for (int i = 0; i < 40; ++i)
        console.write(std::string("f").append(std::to_string(i)), "plain words");
    console.done({"init"});
    console.done({"create", "file-contents", "db"});
    console.process.cancelAt(90);
    const Outcome outcome = console.run({"add", "db", "--location", ".", "--yes"});
    EXPECT_EQ(outcome.code, 5);
    EXPECT_THAT(outcome.err,
                HasSubstr("Would you like to keep the files added before you pressed Cancel? [yes]"));
    EXPECT_THAT(console.leftovers(), IsEmpty());
    console.process.cancelAt(kNever);
    const auto kept = console.done({"details", "db", "--json"}).json().at("listed").get<int>();
    EXPECT_GT(kept, 0);
    EXPECT_LT(kept, 40);
    console.done({"check", "db"});

    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"check", "db"}, {"databases"}, {"files", "db"}, {"add", "db", "f0"}}) {
        console.process.cancelAt(2);
        EXPECT_EQ(console.run(command).code, 5) << command[0];
    }
    EXPECT_THAT(console.leftovers(), IsEmpty());
}

TEST(DayAtWork, aFullDiskIsToldAndLeavesTheOldState) {
    Console console;
    console.write("a", "1");
    console.begin();
    console.write("b", "2");
    console.faults.failAt(1, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
    const Outcome outcome = console.run({"add", "db", "b"});
    EXPECT_EQ(outcome.code, 4);
    EXPECT_THAT(outcome.err, HasSubstr("DiskFull."));
    console.faults.clear();
    EXPECT_EQ(console.done({"details", "db", "--json"}).json().at("listed"), 1);
    console.done({"check", "db"});
    EXPECT_THAT(console.leftovers(), IsEmpty());
}

TEST(DayAtWork, aQuestionWithoutAUserIsAnsweredNo) {
    Console console;
    console.write("a", "1");
    console.begin();
    for (const auto& [command, result] :
         {std::pair(std::vector<std::string>{"delete", "db"}, "Nothing was deleted.\n"),
          std::pair(std::vector<std::string>{"reset"}, "Nothing was reset.\n")}) {
        const Outcome unanswered = console.run(command);
        EXPECT_EQ(unanswered.code, 5);
        EXPECT_EQ(unanswered.out, result);
        EXPECT_THAT(unanswered.err,
                    HasSubstr(" [no]\nThere is no terminal to answer at; --yes answers yes.\n"));
    }
    console.done({"check", "db"});

    console.done({"reset", "--yes"});
    console.input = "another\n";  // an empty index takes any password
    EXPECT_THAT(console.done({"databases"}).out, IsEmpty());
    EXPECT_EQ(console.run({"create", "file-contents", "db"}).code, 4);  // the old file is in the way
    console.done({"create", "file-contents", "db2"});
    console.input = "secret\n";
    EXPECT_EQ(console.run({"databases"}).code, 3);
}

TEST(DayAtWork, detailsAndListsShowWhatTheRecordsHold) {
    Console console;
    console.write("big", std::string(2048, 'x'));
    // Where names may be any bytes, they are shown so that no terminal acts on them.
    const bool anyBytes = canBeNamed("\x1b\xFF");
    console.write(anyBytes ? "odd\x1b[31m\xFF" : "odd", "1");
    console.begin();
    EXPECT_THAT(
        console.done({"details", "db"}).out,
        testing::AllOf(HasSubstr("Created: 12:30:05   29.2.2024\nLast checked: Unchecked\nModified: "),
                       HasSubstr("\nNumber of files listed: 2\nTotal size of files listed: 2049 Bytes.  "
                                 "[2.00 KB].\nDigest value: SHA-256\nDatabase: " +
                                 console.home("Databases/db") + "\n")));
    EXPECT_THAT(
        console.done({"files", "db"}).out,
        HasSubstr(console.path("odd") + (anyBytes ? "\\x1b[31m\\xff" : "") +
                  "\t6b86b273ff34fce19d6b804eff5a3f5747ada4eaa22f1d49c01e52ddb7875b4b\t1\tArchive.\t"));
    console.done({"check", "db"});
    EXPECT_EQ(console.done({"databases"}).out, "file-contents\t" + console.home("Databases/db") +
                                                   "\t12:30:05   29.2.2024\t12:30:05   29.2.2024\tok\n");
}

TEST(DayAtWork, recentDatabasesAreListedLatestFirst) {
    Console console;
    console.begin();
    for (const char* name : {"two", "three"})
        console.done({"create", "file-contents", name});
    console.done({"check", "db"});
    const auto recent = [&] {
        std::string names;
        const auto document = console.done({"databases", "--recent", "--json"}).json();
        for (const auto& database : document.at("databases"))
            names += std::to_string(database.at("recent").get<int>()) +
                     database.at("path").get<std::string>().substr(console.home("Databases").size()) + " ";
        return native(names);
    };
    EXPECT_EQ(recent(), native("1/db 2/three 3/two "));
    console.input = "secret\nnew\nnew\n";
    console.done({"password"});
    console.input = "new\n";
    console.done({"check", "two"});
    console.done({"delete", "db", "--yes"});
    EXPECT_EQ(recent(), native("1/two 2/three "));
    console.done({"config", "set", "recent-count", "1"});
    EXPECT_EQ(recent(), native("1/two "));
    const auto all = console.done({"databases", "--json"}).json().at("databases");
    EXPECT_EQ(all.size(), 2U);
    EXPECT_TRUE(all[1].at("recent").is_null());
    console.done({"config", "set", "Config7", "0"});
    EXPECT_EQ(console.done({"databases", "--recent"}).out, "");
}

TEST(DayAtWork, namesThatAParserCouldTakeForSomethingElse) {
    Console console;
    console.done({"init"});
    console.done({"create", "file-contents", "[db]"});
    std::vector<std::string> names = {"[x]", "[]", "{}", "%%", "[a,b]", "check", "add", "-x", "\x1F[y]"};
    std::erase_if(names, [](const std::string& name) { return !canBeNamed(name); });
    std::vector<std::string> arguments = {"add", "[db]", "--"};
    for (const std::string& name : names) {
        console.write(name, "1");
        arguments.push_back(name);
    }
    console.done(arguments);
    const auto listed = console.done({"files", "[db]", "--json"}).json().at("files");
    ASSERT_EQ(listed.size(), names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(listed[i].at("path"), console.path(names[i]));
}

}  // namespace
}  // namespace corvalence::test
