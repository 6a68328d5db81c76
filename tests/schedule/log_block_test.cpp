#include "schedule/log_block.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "baseline_world.h"
#include "reports/report_writer.h"

namespace corvalence::test {
namespace {

using schedule::BlockHeader;
using schedule::LogBlock;
using schedule::MailPlan;
using store::DatabaseKind;

class TextSink : public schedule::LogSink {
  public:
    std::string text;
    void write(std::string_view more) override { text.append(more); }
};

const std::string kAcross(85, '_');

std::string header(const std::string& database) {
    return "\n12:30:05   29.2.2024\nDatabase: " + database + " checked.\n\n";
}

/// The block that a check of a baseline gives, from the lines of its report.
std::string blockOf(BaselineWorld& base) {
    TextSink sink;
    LogBlock block(sink, base.world.machine.clock);
    EXPECT_EQ(base.world.open("base"), store::OpenResult::Opened);
    block.begin("base", BlockHeader::Checked);
    const auto outcome =
        components::checkDatabase(base.world.vault(), base.machine, base.kind, base.world.context());
    const auto report = reports::ReportFile::open(
        base.world.vault(), reports::reportPath(base.world.configuration(), base.kind.report));
    const auto renderer = base.kind.makeRenderer(base.world.platform.paths);
    const auto& lines = report.value().lines();
    for (std::size_t number = 0; number < lines.size(); ++number)
        block.change(renderer->text(number, lines[number]));
    block.summary(base.kind.kind, outcome);
    block.end(MailPlan::Off);
    return sink.text;
}

const std::string kEnd = "\n\nEmail notification turned off.\n\n" + kAcross + "\n";

TEST(LogBlock, OfFilesTellsEachFieldThenAndNowAndWhatWasRestored) {
    World world;
    TextSink sink;
    LogBlock block(sink, world.machine.clock);
    files::ChangedFileDetails details;
    details.type = "TXT File";
    details.then = {world.path("a.txt"), "aa", 5, 32, {}, {}};
    details.now = details.then;
    details.now.digest = "bb";
    details.now.size = 2048;
    details.now.attributes = 0;
    details.then.created = details.then.written = base::FileTime::fromUnix(FakeClock::kStart, 0);
    details.sizeNow = 2048;
    block.begin("/db", BlockHeader::Checked);
    block.changed(details, {}, world.platform.paths);
    block.unchecked("/b", "Access denied.");
    block.cancelled();
    files::CheckCounts counts;
    counts.checked = 2;
    counts.unchecked = counts.changed = 1;
    counts.identical = 0;
    block.summary(counts);
    block.end(MailPlan::Sealed);
    const std::string change =
        world.path("a.txt") +
        " has been changed!\nFile name: a.txt\nFile type: TXT File\nDigest value when added: aa\n"
        "Digest value now: bb\nSize when added: 5 Bytes. \nSize now: 2048 Bytes.  [2.00 KB].\n"
        "Attributes when added: Archive.\nAttributes now: Indeterminate\n"
        "Creation time when added: 12:30:05   29.2.2024\nCreation time now: Indeterminate\n"
        "Modification time when added: 12:30:05   29.2.2024\nModification time now: Indeterminate\n";
    EXPECT_EQ(sink.text,
              header("/db") + change +
                  "Auto restore turned off.\n\n"
                  "Couldn't check /b\nReason: Access denied.\n[ CANCELLED MID CHECK ]\n"
                  "2 Files checked. \n1 File unchecked. \n1 File changed. \n0 Files unchanged. \n\n\n"
                  "Email notification enabled.\nSending encrypted Email attachment.\n\n" +
                  kAcross + "\n");
    const auto restored = [&](const schedule::AutoRestoreResult& result) {
        sink.text.clear();
        block.changed(details, result, world.platform.paths);
        EXPECT_TRUE(sink.text.starts_with(change));
        return sink.text.substr(change.size());
    };
    const std::string on = "Auto restore enabled.\n" + world.path("a.txt");
    EXPECT_EQ(restored({true, true, files::RestoreChoice::DeleteChangedFile, {}}),
              on + " successfully restored.\nChanged file deleted.\n\n");
    EXPECT_EQ(restored({true, true, files::RestoreChoice::MoveChangedFile, {}}),
              on + " successfully restored.\nChanged file moved to 'Changed Files' folder.\n\n");
    EXPECT_EQ(restored({true, false, files::RestoreChoice::MoveChangedFile, "No backup."}),
              on + " could not be restored.\nReason: No backup.\n\n");
}

TEST(LogBlock, OfADatabaseThatIsGoneOrAlteredHasNoSummary) {
    FakeClock clock;
    TextSink sink;
    LogBlock block(sink, clock);
    block.begin("/db", BlockHeader::Missing);
    block.end(MailPlan::NoModification);
    EXPECT_EQ(sink.text,
              "\n12:30:05   29.2.2024\nDatabase: /db does not exist!\n\n"
              "Email notification enabled only for modifications.\n\n" +
                  kAcross + "\n");
    sink.text.clear();
    block.begin("/db", BlockHeader::Altered);
    block.end(MailPlan::Plain);
    EXPECT_EQ(sink.text,
              "\n12:30:05   29.2.2024\nDatabase: /db has been changed and cannot be checked!\n\n"
              "Email notification enabled.\nSending plaintext Email.\n\n" +
                  kAcross + "\n");
}

TEST(LogBlock, OfADirectoryStructureTellsWhatCameAndWent) {
    BaselineWorld base(DatabaseKind::DirectoryStructure);
    base.world.write("a", "1");
    base.world.write("b", "2");
    base.world.write("z", "3");
    base.create();
    base.remove("a");
    base.world.write("b2", "4");
    EXPECT_EQ(blockOf(base),
              header("base") + "File removed:   " + base.world.path("a") +
                  "\nFile added:   " + base.world.path("b2") +
                  "\n1 Files Added.\n1 Files Removed.\n0 Files moved to Recycle Bin.\n"
                  "0 Files created then moved to Recycle Bin between database checks.\n0 Directories Added.\n"
                  "0 Directories Removed.\n0 Directories moved to Recycle Bin.\n"
                  "0 Directories created then moved to Recycle Bin between database checks.\n"
                  "0 Alternate Data Streams added.\n0 Alternate Data Streams removed.\n" +
                  kEnd);
}

TEST(LogBlock, OfARegistryBeginsEveryChangeWithItsHeading) {
    BaselineWorld base(DatabaseKind::Registry);
    const auto value = [](const std::string& name, const std::string& text) {
        return platform::RegistryValue{name, 1, {}, text};
    };
    auto& key = base.registry.key(platform::RegistryRoot::Users, "k");
    key.values = {value("a", "1"), value("b", "2"), value("d", "4")};
    base.create();
    key.values = {value("a", "one"), value("c", "3"), value("d", "4")};
    const std::string name = "HKEY_USERS\\k\\";
    EXPECT_EQ(blockOf(base),
              header("base") + "Changed Registry Value: \nKey:  " + name +
                  "a\nOld Type:  REG_SZ\nNew Type:  REG_SZ\nOld Value:  1\nNew Value:  one\n\n"
                  "New Registry Subkey: \nKey:  " +
                  name + "c\nType:  REG_SZ\nValue:  3\n\nRemoved Registry Subkey: \nKey:  " + name +
                  "b\nType:  REG_SZ\nValue:  2\n\n1 New Registry Subkeys\n1 Removed Registry Subkeys\n"
                  "1 Changed Registry Values\n" +
                  kEnd);
}

TEST(LogBlock, OfServicesTellsEveryField) {
    BaselineWorld base(DatabaseKind::Services);
    for (const char* name : {"a", "b"})
        base.services.installed.push_back({name, name, 0x10, 4, 1, std::nullopt, ""});
    base.create();
    base.services.installed[1].displayName = "other";
    const auto fields = [](const std::string& display) {
        return "Service Name: b\nDisplay Name: " + display +
               "\nService Type: OWN PROCESS  \nCurrent status: RUNNING\nControls Accepted: ACCEPT STOP  \n\n";
    };
    EXPECT_EQ(blockOf(base),
              header("base") + "Service b has been changed!\nService Previously: \n" + fields("b") +
                  "Service now: \n" + fields("other") +
                  "2 Services Checked. \n1 Service Changed. \n0 New Services. \n0 Removed Services. \n" +
                  kEnd);
}

TEST(LogBlock, OfPermissionsTellsTheListsBeforeAndNow) {
    BaselineWorld base(DatabaseKind::Permissions);
    if (base.world.platform.paths.separator == '\\') GTEST_SKIP() << "modes are no access lists here";
    base.world.write("a", "1");
    base.world.write("b", "2");
    base.create();
    std::filesystem::permissions(fsPath(base.world.path("a")), std::filesystem::perms::owner_read);
    const std::string block = blockOf(base);
    const std::string before = "The Permissions for " + base.world.path("a") +
                               " have been changed!\n\nPrevious Permissions: \n\nAccount: ";
    EXPECT_TRUE(block.starts_with(header("base") + before)) << block;
    EXPECT_NE(block.find("\nNew Permissions: \n\nAccount: "), std::string::npos) << block;
    EXPECT_TRUE(
        block.ends_with(" File Permissions checked. \n0 File Permissions unchecked. \n"
                        "1 File Permissions changed. \n1 File Permissions unchanged. \n" +
                        kEnd))
        << block;
}

TEST(LogBlock, TellsWhatKeepsAResultFromBeingWhole) {
    FakeClock clock;
    TextSink sink;
    LogBlock block(sink, clock);
    components::CheckOutcome outcome;
    outcome.counts = {{"changed", " File Permissions changed. ", 1}};
    outcome.remarks = {{"checked", 3, " File Permissions checked. ", {}},
                       {"unchecked", 1, " File Permissions unchecked. ", {{"/x", "Access denied."}}, true},
                       {"hidden", 9, " passed over.", {}},
                       {"malformed", 2, " lines of the database are no records.", {}, true}};
    block.summary(DatabaseKind::Permissions, outcome);
    EXPECT_EQ(sink.text,
              "Couldn't check /x\nReason: Access denied.\n3 File Permissions checked. \n"
              "1 File Permissions unchecked. \n1 File Permissions changed. \n"
              "0 Files Permissions unchanged. \n2 lines of the database are no records.\n\n\n");
}

TEST(LogBlock, IsMailedByTheThreeSettings) {
    World world;
    const auto plan = [&](const char* mails, const char* onlyChanges, const char* sealed, bool modified) {
        world.set("Config23", mails);
        world.set("Config24", onlyChanges);
        world.set("Config25", sealed);
        return schedule::mailPlan(world.configuration(), modified);
    };
    EXPECT_EQ(plan("0", "0", "0", true), MailPlan::Off);
    EXPECT_EQ(plan("1", "0", "0", false), MailPlan::Plain);
    EXPECT_EQ(plan("1", "0", "1", false), MailPlan::Sealed);
    EXPECT_EQ(plan("1", "1", "1", false), MailPlan::NoModification);
    EXPECT_EQ(plan("1", "1", "0", true), MailPlan::Plain);
    EXPECT_FALSE(schedule::isMailed(MailPlan::NoModification));
    EXPECT_TRUE(schedule::isMailed(MailPlan::Sealed));
}

}  // namespace
}  // namespace corvalence::test
