#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/hex_text.h"
#include "baseline_world.h"
#include "components/permission_record.h"
#include "components/permission_report.h"
#include "crypto/md5.h"
#include "crypto/sealed_file.h"
#include "machine.h"

namespace corvalence::test {
namespace {

using components::renderAccessList;
using platform::AccessEntry;
using platform::AccountState;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Counts = std::map<std::string, std::uint64_t>;
using List = std::vector<AccessEntry>;

AccessEntry entry(const std::string& account, std::uint32_t rights) {
    return {AccountState::Known, account, "owner", rights, false};
}

TEST(PermissionRecord, RendersEveryEntryInOrder) {
    EXPECT_EQ(renderAccessList(std::nullopt), "0,0,0\x7F");
    EXPECT_EQ(renderAccessList(List{}), "");
    EXPECT_EQ(renderAccessList(List{{AccountState::Known, "bob", "HOST", 0xF01FF, true},
                                    {AccountState::Unnamed, "", "", 131209, false},
                                    {AccountState::Failed, "", "", 0xFFFFFFFF, false},
                                    {AccountState::Known, "a,b\r\n\x7F", "d", 0, false}}),
              "bob,HOST,983551\x7FUnnamed account,Unnamed account,131209\x7F,,4294967295\x7F"
              "a,b   ,d,0\x7F");
    const std::string odd = "/f\x7F" + renderAccessList(List{entry("a,b", 7)});
    const auto read = components::permissionEntries(odd);
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read[0].account, "a,b");
    EXPECT_EQ(read[0].domain, "owner");
    EXPECT_EQ(read[0].rights, 7U);
    for (const char* line : {"/f\x7F",
                             "/f\x7F"
                             "0,0,0\x7F",
                             "C:\\f\x7F,,0\x7F", "\\\\h\\f\x7F,,0\x7F"})
        EXPECT_TRUE(components::isPermissionRecord(line)) << line;
    for (const char* line : {"", "/f", "f\x7F", "\x7F",
                             "/f\x7F"
                             "0,0,0",
                             "/f\x7F\x7F",
                             "/f\x7F"
                             "0,0\x7F",
                             "/f\x7F,0\x7F",
                             "/f\x7F"
                             "a,b,\x7F",
                             "/f\x7F"
                             "a,b,-1\x7F",
                             "/f\x7F"
                             "a,b,4294967296\x7F",
                             "/f\x7F"
                             "a,b,1 \x7F"})
        EXPECT_FALSE(components::isPermissionRecord(line)) << line;
}

TEST(PermissionRecord, NamesItsColumnsAsTheReportDoesAndEveryBit) {
    const auto columns = reports::reportRow(reports::ReportKind::Permissions).columns;
    ASSERT_EQ(columns.size(), components::kPermissionColumns.size() + 4);
    for (std::size_t at = 0; at < components::kPermissionColumns.size(); ++at)
        EXPECT_EQ(components::kPermissionColumns[at].name, columns[at + 4]);
    EXPECT_THAT(
        components::rightNames(0xF01FF),
        ElementsAre("List Folder", "Create Files", "Create Folders", "Read", "Write", "Traverse Folder",
                    "Delete Subfolders/Files", "Read Attributes", "Change Attributes", "Delete",
                    "Read Permissions", "Change Permissions", "Take Ownership"));
    EXPECT_THAT(components::rightNames(0x80E00000),
                ElementsAre("Set User ID", "Set Group ID", "Sticky", "0x80000000"));
}

class Permissions : public testing::Test, public BaselineWorld {
  protected:
    Permissions() : BaselineWorld(store::DatabaseKind::Permissions) {
        for (const char* name : {"a", "b/1", "b/2", "c"})
            world.write(name, "x");
    }
    std::string at(const std::string& name) const { return world.path(native(name)); }
    ScriptedAccessLists::List& listOf(const std::string& name) { return accessLists.lists[at(name)]; }
    std::string database() const { return world.data("Databases/base"); }

    /// Puts another text in the database's place, as who has the password could.
    BaselineOutcome checkOf(const std::string& text) {
        crypto::sealFile(world.vault().working, text, database(), world.vault().session.key,
                         crypto::PathIV(database()));
        std::string digest = base::hexText(crypto::Md5::of(base::bytesOf(readWholeFile(database()))));
        const auto progress = world.machine.ui.openProgress("check");
        const auto check = kind.makeCheck(world.vault(), machine, database(), {{database(), digest}});
        reports::ReportWriter report(world.vault(), kind.report);
        EXPECT_TRUE(check->compare(*progress, report));
        report.keep();
        BaselineOutcome outcome;
        outcome.lines = this->report();
        for (const components::Remark& remark : check->remarks())
            outcome.remarks[std::string(remark.name)] = remark.count;
        return outcome;
    }
};

TEST_F(Permissions, OfAnUnchangedMachineGiveAnEmptyReport) {
    const BaselineOutcome created = create();
    EXPECT_EQ(created.counts, (Counts{{"permissions", 4}}));
    EXPECT_EQ(created.remarks, (Counts{{"folders", 1}}));
    const BaselineOutcome checked = check();
    EXPECT_THAT(checked.lines, IsEmpty());
    EXPECT_THAT(checked.counts, IsEmpty());
    EXPECT_EQ(checked.remarks, (Counts{{"checked", 4}, {"unchanged", 4}}));
    // The installation's own files are left out, those of other databases too.
    world.set(settings::key::kWalkRoots, world.data(""));
    ASSERT_TRUE(create("own").opened);
    world.write("a", "y");
    EXPECT_THAT(check("own").faults, IsEmpty());
}

TEST_F(Permissions, TellsEachChangedListWithBothRecordsAndNothingElse) {
    listOf("a") = List{entry("root", 1)};
    listOf("b/1") = List{entry("root", 1)};
    listOf("c") = std::nullopt;
    create();
    listOf("a") = List{entry("root", 1), entry("root", 1)};  // one to refuse, by its type alone
    listOf("c") = List{};
    world.write("new", "x");
    remove("b/2");
    const BaselineOutcome outcome = check();
    EXPECT_THAT(outcome.lines, ElementsAre("Cf a", "Ct a", "Cf c", "Ct c"));
    EXPECT_EQ(outcome.counts, (Counts{{"changed", 2}}));
    EXPECT_EQ(outcome.faults, (Counts{{"unchecked", 1}}));
    EXPECT_THAT(outcome.details, ElementsAre(at("b/2") + " FileNotFound."));
    EXPECT_EQ(outcome.remarks, (Counts{{"checked", 3}, {"unchanged", 1}, {"unchecked", 1}}));
}

TEST_F(Permissions, AreShownEntryByEntry) {
    const base::PathRules paths;
    const components::PermissionRenderer renderer(paths);
    const std::string line =
        "/d/f\x7Fme,owner,2228393\x7Fothers,other,983551\x7F";  // 0x2200A9: execute with its set-id bit
    EXPECT_TRUE(renderer.beginsRecord(4, line));
    EXPECT_FALSE(renderer.beginsRecord(5, line));
    const auto rows = renderer.rows(line);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0], *renderer.columns(line));
    EXPECT_THAT(rows[0], ElementsAre("f", "/d/", "me", "owner [Set User ID]", "No", "Yes", "No", "Yes", "Yes",
                                     "Yes", "No", "No", "No", "No", "Yes", "No", "Yes", "No"));
    EXPECT_EQ(std::count(rows[1].begin(), rows[1].end(), "Yes"), 14);
    EXPECT_EQ(renderer.fields(5, line)[0].value, "Ct");
    EXPECT_EQ(renderer.fields(5, line)[2].value, "me,owner,2228393\nothers,other,983551");
    EXPECT_THAT(
        renderer.text(4, line),
        testing::StartsWith("The Permissions for /d/f have been changed!\n\nPrevious Permissions: \n\n"
                            "Account: me\nDomain: owner\nPermissions: \nList Folder\nRead\n"));
    EXPECT_THAT(renderer.text(5, line), testing::StartsWith("New Permissions: \n\nAccount: me\n"));
    EXPECT_EQ(renderer.rows("/f\x7F").size(), 1U);
    EXPECT_FALSE(renderer.columns("no record"));
    EXPECT_THAT(renderer.fields(0, "no record"), IsEmpty());
}

TEST_F(Permissions, ThatCannotBeReadCountAsNoneAndAreTold) {
    accessLists.failures[at("a")] = base::Cause::AccessDenied;
    const BaselineOutcome created = create();
    EXPECT_EQ(created.counts, (Counts{{"permissions", 4}}));
    EXPECT_EQ(created.faults, (Counts{{"lists_unreadable", 1}}));
    EXPECT_THAT(created.details, ElementsAre(at("a") + " AccessDenied."));
    EXPECT_THAT(check().lines, IsEmpty());
    EXPECT_EQ(check().faults, (Counts{{"lists_unreadable", 1}}));
    accessLists.failures[at("c")] = base::Cause::FileNotFound;  // though it is there
    const BaselineOutcome more = check();
    EXPECT_THAT(more.lines, ElementsAre("Cf c", "Ct c"));
    EXPECT_EQ(more.faults, (Counts{{"lists_unreadable", 2}}));
    accessLists.failures.clear();
    EXPECT_THAT(check().lines, ElementsAre("Cf a", "Ct a"));
    EXPECT_THAT(check().faults, IsEmpty());
}

TEST_F(Permissions, PassOverNamesOfPageFilesUnlessWalksAreComplete) {
    for (const char* name : {"pagefile.sys", "mypagefile.sys", "Pagefile.sys.1", ".hidden"})
        world.write(name, "x");
    EXPECT_EQ(create().remarks, (Counts{{"folders", 1}, {"hidden", 1}, {"page_files", 2}}));
    EXPECT_EQ(check().remarks.at("checked"), 5U);
    world.set(settings::key::kCompleteWalk, "1");
    EXPECT_EQ(create("all").counts, (Counts{{"permissions", 9}}));  // all files, and the folder
    listOf("pagefile.sys") = std::nullopt;
    listOf("b") = List{};
    EXPECT_THAT(check("all").lines, ElementsAre("Cf b/", "Ct b/", "Cf pagefile.sys", "Ct pagefile.sys"));
    world.set(settings::key::kCompleteWalk, "0");
    const BaselineOutcome outcome = check("all");
    EXPECT_THAT(outcome.lines, ElementsAre("Cf b/", "Ct b/"));
    EXPECT_EQ(outcome.remarks.at("page_files"), 2U);
}

TEST_F(Permissions, LongerThanARecordAreRefusedAndShorterOnesReadWhole) {
    listOf("a") = List(40'000, entry("somebody with a name", 1));
    listOf("c") = List(20'000, entry("somebody with a name", 1));
    const BaselineOutcome created = create();
    EXPECT_EQ(created.faults, (Counts{{"lists_refused", 1}}));
    EXPECT_THAT(created.details, ElementsAre(at("a") + " "));
    EXPECT_THAT(check().lines, IsEmpty());
    listOf("c")->pop_back();
    EXPECT_THAT(check().lines, ElementsAre("Cf c", "Ct c"));
    listOf("c")->insert(listOf("c")->end(), 30'000, entry("somebody with a name", 1));
    EXPECT_THAT(check().lines, ElementsAre("Cf c", "Ct c"));
}

TEST_F(Permissions, OfADamagedDatabaseAreComparedLineByLineAndTheRestIsTold) {
    create();
    listOf("a") = std::nullopt;
    const BaselineOutcome outcome = checkOf("garbage, and enough of it\r\n" + at("a") +
                                            "\x7F"
                                            "0,0,0\x7F\r\n" +
                                            at("b/1") +
                                            "\x7F"
                                            "0,0,0\r\n" +
                                            at("c") +
                                            "\x7F"
                                            "x,y,1\x7F\r\n" +
                                            at("a") +
                                            "\x7F"
                                            "0,0");
    EXPECT_THAT(outcome.lines, ElementsAre("Cf c", "Ct c"));
    EXPECT_EQ(outcome.remarks, (Counts{{"checked", 2}, {"unchanged", 1}, {"malformed", 3}}));
    // Without the key that sealed it, or cut, the file is not the database any more.
    ASSERT_FALSE(check().opened);
    world.machine.ui.answers = {true};
    EXPECT_TRUE(check().opened);
    const std::string whole = readWholeFile(database());
    for (const std::size_t length : {std::size_t{0}, std::size_t{5}, whole.size() - 16, whole.size() - 1}) {
        writeWholeFile(database(), whole.substr(0, length));
        EXPECT_FALSE(check().opened) << length;
    }
}

TEST_F(Permissions, OfNoFilesAreAnEmptyDatabase) {
    for (const char* name : {"a", "b", "c"})
        remove(name);
    EXPECT_THAT(create().counts, IsEmpty());
    EXPECT_THAT(check().lines, IsEmpty());
    EXPECT_TRUE(world.machine.ui.saw(database() + " is an empty database."));
}

TEST_F(Permissions, LeaveNothingBehindWhereTheyAreCancelled) {
    for (const std::uint64_t at : {1U, 3U, 5U}) {
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        EXPECT_TRUE(create().cancelled) << at;
        EXPECT_TRUE(std::filesystem::is_empty(fsPath(world.data("Databases"))));
    }
    world.machine.ui.cancelAt.reset();
    create();
    listOf("a") = List{};
    EXPECT_THAT(check().lines, ElementsAre("Cf a", "Ct a"));
    listOf("b/1") = List{};
    for (const std::uint64_t at : {1U, 3U, 5U}) {
        world.open("base");
        world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + at;
        EXPECT_TRUE(components::checkDatabase(world.vault(), machine, kind, world.context()).cancelled);
        world.machine.ui.cancelAt.reset();
        EXPECT_THAT(report(), ElementsAre("Cf a", "Ct a"));
    }
}

}  // namespace
}  // namespace corvalence::test
