#include "files/add_pipeline.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "failure_of.h"
#include "files/backup_room.h"
#include "listed_file.h"
#include "store/backup_pair.h"
#include "world.h"

namespace corvalence::test {
namespace {

std::string couldNotAdd(const std::string& path, const std::string& reason) {
    return "Couldn't add " + path + "\nReason: " + reason;
}

TEST(AddPipeline, ReportsInSingularAndPlural) {
    EXPECT_EQ(files::addReportText(1, 0, "/x"), "1 File located in /x successfully added to the database.");
    EXPECT_EQ(files::addReportText(2, 1, "/x"),
              "2 Files located in /x successfully added to the database.\n\n1 File listed previously.");
    EXPECT_EQ(files::addReportText(2, 3, "*"),
              "2 Files successfully added to the database.\n\n3 Files listed previously.");
    EXPECT_EQ(files::addReportText(0, 0, "/x"), "/x contains only empty folders.");
    EXPECT_EQ(files::addReportText(0, 5, "/x"), "All files located in /x were previously listed.");
    EXPECT_EQ(files::addReportText(0, 5, "*"), "All files were previously listed.");
}

TEST(AddPipeline, RecordsFilesInOrderWithDigestSizeAttributesAndTimes) {
    World world;
    world.write("z", std::string(64, 'z'));
    world.write("a", "");
    setReadOnly(world.path("a"), true);
    world.create("db", crypto::DigestCode::Md5);
    EXPECT_EQ(world.add({"z", "a"}).added, 2U);
    const auto records = world.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].path, world.path("z"));
    EXPECT_EQ(records[0].size, 64U);
    EXPECT_EQ(records[0].attributes, 0x20);
    EXPECT_EQ(records[1].digest, "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(records[1].attributes, 0x21);
    EXPECT_EQ(records[0].written,
              world.machine.system.files.status(world.path("z"), platform::Follow::No)->written);
}

TEST(AddPipeline, ListsAFileOnceAndSeparatesNamesThatBeginAlike) {
    World world;
    world.write("a.txt", "1");
    world.write("a.txt.bak", "2");
    world.create();
    world.add({"a.txt.bak", "a.txt"});
    EXPECT_EQ(world.records().size(), 2U);
    const auto again = world.add({"a.txt"});
    EXPECT_EQ(again.listed, 1U);
    EXPECT_EQ(again.text, "All files were previously listed.");
    EXPECT_TRUE(world.machine.ui.saw(world.path("a.txt") + " previously listed."));
    EXPECT_EQ(world.addAll().text, "All files located in " + world.path("") + " were previously listed.");
}

TEST(AddPipeline, RefusesWhatARecordCannotHoldAndWhatIsNoFile) {
    World world;
    std::vector<std::string> noFiles;
    if (makePipe(world.path("fifo"))) noFiles.push_back(world.path("fifo"));
    if (!deviceFile().empty()) noFiles.push_back(deviceFile());
    world.write("folder/x", "1");
    noFiles.push_back(world.path("folder"));
    std::vector<std::string> badPaths = {
        world.write("a\x7F"
                    "b",
                    "1")};
    if (canBeNamed("a\nb")) world.write("a\nb", "1");
    badPaths.push_back(world.path("a\nb"));
    // A path of 260 bytes is the longest that a record holds.
    const std::size_t room = 260 - world.path("").size();
    const std::string longest =
        world.write(std::string(room / 2, 'd') + "/" + std::string(room - room / 2 - 1, 'f'), "1");
    const std::string tooLong =
        world.write(std::string(room / 2, 'd') + "/" + std::string(room - room / 2, 'f'), "1");
    ASSERT_EQ(longest.size(), 260U);
    world.create();
    badPaths.push_back(tooLong);
    std::vector<std::string> all = {longest, world.path("missing")};
    all.insert(all.end(), noFiles.begin(), noFiles.end());
    all.insert(all.end(), badPaths.begin(), badPaths.end());
    const auto report = world.add(all);
    EXPECT_EQ(report.added, 1U);
    EXPECT_EQ(report.failed, all.size() - 1);
    badPaths[1] = world.path("a\\nb");
    for (const std::string& path : badPaths)
        EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(path, "BadPath."))) << path;
    for (const std::string& path : noFiles)
        EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(path, "InvalidFile."))) << path;
    EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(world.path("missing"), "FileNotFound.")));
    EXPECT_EQ(world.records().at(0).path, longest);
    EXPECT_EQ(world.check().counts().identical, 1U);
}

TEST(AddPipeline, TakesAReadErrorForNoEndOfFile) {
    World world;
    world.write("bad", std::string(600000, 'x'));
    world.write("good", "1");
    world.create();
    world.machine.faults.failReads(native("/bad"), 300000);
    const auto report = world.add({"bad", "good"});
    EXPECT_EQ(report.added, 1U);
    EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(world.path("bad"), "Generic.")));
    // Nothing of the bad file stays in the container, and the good one is found in it.
    world.write("good", "2");
    EXPECT_TRUE(world.restore("good").restored);
    EXPECT_EQ(world.read("good"), "1");
}

TEST(AddPipeline, WalksDepthFirstAndCountsWhatItPassesOver) {
    World world;
    for (const char* name : {"1", "b/2", "b/c/3", "d/4", "z", ".hidden", ".git/5"})
        world.write(name, name);
    const bool hasLinks = makeLink(world.path("1"), world.path("link")) && makeLink(".", world.path("loop"));
    world.create();
    const auto report = world.addAll();
    EXPECT_EQ(report.added, 5U);
    EXPECT_EQ(report.passedOver.hiddenNames, 2U);
    EXPECT_EQ(report.passedOver.links, hasLinks ? 2U : 0U);
    std::vector<std::string> order;
    for (const auto& record : world.records())
        order.push_back(record.path.substr(world.path("").size()));
    // The files of a folder, then the sub-folder that was met last.
    EXPECT_EQ(order, (std::vector<std::string>{"1", "z", native("d/4"), native("b/2"), native("b/c/3")}));

    world.set("Complete Walk", "1");
    EXPECT_EQ(world.addAll().added, 2U);
}

TEST(AddPipeline, LeavesOutTheInstallationsOwnWorkingFilesButNotTheIndex) {
    World world;
    world.create();
    world.open();
    const auto report =
        files::AddPipeline(world.vault(), world.context()).addLocation(world.data(""), {}, {});
    std::vector<std::string> paths;
    for (const auto& record : world.records())
        paths.push_back(record.path);
    const auto lists = [&](const std::string& path) {
        return std::count(paths.begin(), paths.end(), path) == 1;
    };
    EXPECT_TRUE(lists(world.data("Backup Files/Database Index")));
    for (const char* own :
         {"Databases/db", "Databases/db~", "Backup Files/Backup File 1", "Backup Files/Backup Index 1",
          "lock", "Working Copies", "Databases/db.123456789z"}) {
        EXPECT_FALSE(lists(world.data(own))) << own;
    }
    EXPECT_GE(report.ownFiles, 5U);
    // A walk that added a file of its own making would find it changed at once.
    EXPECT_EQ(world.check().counts().changed, 1U);  // the index itself
}

// A container that was added by another of its names once grew until the disk was full.
TEST(AddPipeline, KnowsItsOwnFilesByWhateverNameTheyAreReached) {
    World world;
    listFile(world, "a", "one");
    const std::string container = world.data("Backup Files/Backup File 1");
    std::filesystem::create_hard_link(container, world.path("hard"));
    std::vector<std::string> names = {"hard"};
    if (makeLink(container, world.path("soft")) && makeLink(world.data(""), world.path("way"))) {
        names.insert(names.end(), {"soft", "way/Databases/db", "way/Working Copies"});
    }
    // Where the held container is closed to others, that is told first.
    const bool isClosed = causeOf([&] {
                              const auto held = world.machine.files.openExclusive(container);
                              world.machine.files.openShared(world.path("hard"));
                          }) == base::Cause::SharingViolation;
    const auto report = world.add(names);
    EXPECT_EQ(report.failed, names.size());
    for (const std::string& name : names) {
        const char* const reason = isClosed ? "SharingViolation. " : "AccessDenied.";
        EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(world.path(name), reason))) << name;
    }
    EXPECT_EQ(world.addAll().ownFiles, isClosed ? 0U : 1U);
    EXPECT_EQ(world.records().size(), 1U);
}

TEST(AddPipeline, AddsWhatMeetsAllCriteria) {
    World world;
    world.write("a.txt", "a needle");
    world.write("b.txt", "a Needle, and more of it");
    world.write("sub/c.txt", "nothing");
    world.write("sub/d.bin", "a needle");
    world.create();
    world.add({"a.txt"});
    world.open();
    files::Criteria criteria;
    criteria.type = files::TypeCriterion{"txt"};
    criteria.contents = files::ContentsCriterion{"needle", false, false, false};
    files::AddPipeline pipeline(world.vault(), world.context());
    const std::string folder = world.path("");
    const auto report = pipeline.addLocation(folder, criteria, {});
    EXPECT_EQ(report.added, 1U);
    EXPECT_EQ(report.listed, 1U);
    EXPECT_EQ(report.text, "1 File located in " + folder +
                               " successfully added to the database.\n\n1 File listed previously.");
    criteria.size = files::SizeCriterion{files::SizeCriterion::Relation::LargerThan, 1000, 0};
    EXPECT_EQ(pipeline.addLocation(folder, criteria, {}).added, 0U);

    // What cannot be read is told, never silently passed over.
    world.machine.faults.failReads("c.txt");
    criteria.size.reset();
    const auto unreadable = pipeline.addLocation(folder, criteria, {});
    ASSERT_EQ(unreadable.passedOver.unreadable.size(), 1U);
    EXPECT_EQ(unreadable.passedOver.unreadable[0].path, world.path("sub/c.txt"));
    EXPECT_TRUE(world.machine.ui.saw("Couldn't check " + world.path("sub/c.txt") + "\nReason: Generic."));
}

TEST(AddPipeline, AddsNothingWhereTheBackupsHaveNoRoomAndSaysSo) {
    using files::backupRoom;
    using files::BackupRoom;
    EXPECT_EQ(backupRoom(100, 100, false), BackupRoom::Enough);
    EXPECT_EQ(backupRoom(101, 100, true), BackupRoom::DiskTooSmall);
    EXPECT_EQ(backupRoom(4'096'000'000, UINT64_MAX, true), BackupRoom::Enough);
    EXPECT_EQ(backupRoom(4'096'000'001, UINT64_MAX, true), BackupRoom::FileTooLarge);
    EXPECT_EQ(backupRoom(4'096'000'001, UINT64_MAX, false), BackupRoom::Enough);

    World world;
    world.write("a", std::string(1000, 'a'));
    world.write("b", std::string(1000, 'b'));
    world.create();
    world.open();
    const std::string sealedBefore = readWholeFile(world.databasePath());
    files::AddPipeline pipeline(world.vault(), world.context());
    std::vector<files::AddSearch> searches;
    files::AddOptions options;
    options.proceed = [&](const files::AddSearch& found) {
        EXPECT_TRUE(world.leftovers().empty());  // nothing plain while the user thinks about it
        searches.push_back(found);
        return true;
    };
    world.machine.status.room = 1999;
    const auto refused = pipeline.addLocation(world.path(""), {}, options);
    EXPECT_TRUE(refused.refused);
    EXPECT_EQ(refused.added, 0U);
    EXPECT_EQ(readWholeFile(world.databasePath()), sealedBefore);
    EXPECT_TRUE(world.machine.ui.saw(std::string(files::refusalText(BackupRoom::DiskTooSmall))));
    // Without backups there is enough room.
    options.backups = files::AddBackups::None;
    EXPECT_EQ(pipeline.addLocation(world.path(""), {}, options).added, 2U);
    ASSERT_EQ(searches.size(), 2U);
    EXPECT_EQ(searches[0].bytes, 2000U);
    EXPECT_FALSE(searches[0].canProceed);
    EXPECT_TRUE(searches[1].canProceed);
    EXPECT_EQ(files::foundText(searches[1].files, searches[1].bytes),
              "Number of files to be added: 2\nTotal size of files to be added: 2000 Bytes [1.95 KB]");
}

// What a search found may be another thing by the time it is added.
TEST(AddPipeline, GoesOnWhereFilesGrowOrVanishBehindTheSearch) {
    World world;
    for (const char* name : {"gone", "grown", "same"})
        world.write(name, name);
    world.create();
    world.open();
    files::AddOptions options;
    options.proceed = [&](const files::AddSearch&) {
        std::filesystem::remove(world.path("gone"));
        world.write("grown", std::string(300'000, 'g'));
        return true;
    };
    const auto report =
        files::AddPipeline(world.vault(), world.context()).addLocation(world.path(""), {}, options);
    EXPECT_EQ(report.added, 2U);
    EXPECT_EQ(report.failed, 1U);
    EXPECT_TRUE(world.machine.ui.saw(couldNotAdd(world.path("gone"), "FileNotFound.")));
    EXPECT_EQ(world.records().at(0).size, 300'000U);
    EXPECT_EQ(world.check().counts().identical, 2U);
    world.write("grown", "less");
    EXPECT_TRUE(world.restore("grown").restored);
    EXPECT_EQ(world.read("grown").size(), 300'000U);
}

TEST(AddPipeline, MakesTheBackupsThatOneCommandAsksFor) {
    World world;
    for (const char* name : {"none", "plain", "sealed"})
        world.write(name, "needle");
    world.create();
    world.open();
    files::AddPipeline pipeline(world.vault(), world.context());
    files::AddOptions options;
    const auto container = [&] { return readWholeFile(world.data("Backup Files/Backup File 1")); };
    options.backups = files::AddBackups::None;
    pipeline.addFiles({world.path("none")}, options);
    EXPECT_EQ(container(), "");
    world.set("Config5", "0");
    options.backups = files::AddBackups::Sealed;
    pipeline.addFiles({world.path("sealed")}, options);
    EXPECT_EQ(container().size(), 16U);
    EXPECT_EQ(container().find("needle"), std::string::npos);
    options.backups = files::AddBackups::Plain;
    pipeline.addFiles({world.path("plain")}, options);
    EXPECT_EQ(container().substr(16), "needle");
    for (const char* name : {"plain", "sealed"}) {
        world.write(name, "changed");
        EXPECT_TRUE(world.restore(name).restored) << name;
        EXPECT_EQ(world.read(name), "needle");
    }
}

TEST(AddPipeline, SaysWhyALocationCannotBeUsed) {
    TestPlatform machine;
    const std::string missing = machine.folder / "missing";
    EXPECT_EQ(files::locationRefusal(machine.platform, missing), missing + "  is not a valid location.");
    EXPECT_EQ(files::locationRefusal(machine.platform, machine.folder.path()), "");
    EXPECT_EQ(files::locationRefusal(machine.platform, "*"), "");
    // A drive that does not answer.
    const std::string root = machine.folder / "drive";
    machine.volumes.everywhere = root;
    const std::vector<std::pair<platform::DriveType, std::string>> texts = {
        {platform::DriveType::Removable, "There is no media in " + root},
        {platform::DriveType::Optical, "There is no disc in " + root},
        {platform::DriveType::Remote,
         root + " is an unaccessable network drive.\nMake sure you are connected to " + root +
             " and that you have access rights."},
        {platform::DriveType::Fixed, missing + "  is not a valid location."}};
    for (const auto& [type, text] : texts) {
        machine.volumes.type = type;
        EXPECT_EQ(files::locationRefusal(machine.platform, missing), text);
    }
}

class Cancelling : public testing::TestWithParam<bool> {};

TEST_P(Cancelling, KeepsWhatIsCompleteOrRollsBack) {
    const bool keep = GetParam();
    World world;
    listFile(world, "before", "0");
    const std::string sealedBefore = readWholeFile(world.databasePath());
    world.write("a", "1");
    world.write("b", std::string(1'000'000, 'b'));
    world.open();
    // Cancelled in the middle of the second file.
    world.machine.ui.cancelAt = world.machine.ui.cancelQuestions() + 6;
    world.machine.ui.answers = {keep};
    const auto report =
        files::AddPipeline(world.vault(), world.context()).addFiles({world.path("a"), world.path("b")}, {});
    world.machine.ui.cancelAt.reset();
    EXPECT_TRUE(report.cancelled);
    EXPECT_EQ(report.kept, keep);
    EXPECT_TRUE(world.machine.ui.saw("Would you like to keep the files added before you pressed Cancel?"));
    EXPECT_EQ(world.records().size(), keep ? 2U : 1U);
    if (!keep) {
        EXPECT_EQ(readWholeFile(world.databasePath()), sealedBefore);
    }
    EXPECT_TRUE(world.leftovers().empty());
    // The container goes on behind what is complete: the next files are found in it.
    world.add({"b"});
    world.write("b", "changed");
    EXPECT_TRUE(world.restore("b").restored);
    EXPECT_EQ(world.read("b").size(), 1'000'000U);
}

INSTANTIATE_TEST_SUITE_P(AddPipeline, Cancelling, testing::Bool());

}  // namespace
}  // namespace corvalence::test
