#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "core/clean_up.h"
#include "core/folder_icons.h"
#include "core/installation.h"
#include "core/self_check.h"
#include "help_digest.h"
#include "reports/report_writer.h"
#include "world.h"

namespace corvalence::test {
namespace {

using core::SelfCheckResult;
namespace fs = std::filesystem;

class SelfCheck : public testing::Test {
  protected:
    /// A program with its digest and its help, as an installation has them.
    SelfCheck() {
        files = core::SelfCheckFiles::beside(machine.folder.write("corvalence", program), "App SC",
                                             machine.system.paths);
        writeDigest(program);
        fs::copy_file(CORVALENCE_TEST_HELP, machine.folder / "Corvalence.help");
    }
    void writeDigest(std::string_view content) {
        const auto digest = crypto::Md5::of(base::bytesOf(content));
        machine.folder.write("App SC", std::string(digest.begin(), digest.end()));
    }
    SelfCheckResult checkProgram() { return core::SelfCheck(machine.platform, files).checkProgram(); }
    SelfCheckResult checkHelp() { return core::SelfCheck(machine.platform, files).checkHelp(kHelpDigest); }

    TestPlatform machine;
    core::SelfCheckFiles files;
    const std::string program = std::string(600'000, 'p');
};

TEST_F(SelfCheck, tellsAProgramThatIsNotTheOneThatWasBuilt) {
    EXPECT_EQ(checkProgram(), SelfCheckResult::Same);
    flipByte(files.program, 599'999);
    EXPECT_EQ(checkProgram(), SelfCheckResult::Changed);
    flipByte(files.program, 599'999);
    EXPECT_EQ(checkProgram(), SelfCheckResult::Same);
    writeWholeFile(files.digest, machine.folder.read("App SC") + "behind the digest");
    EXPECT_EQ(checkProgram(), SelfCheckResult::Same);
    fs::resize_file(files.digest, 15);
    EXPECT_EQ(checkProgram(), SelfCheckResult::Changed);
    fs::remove(files.digest);
    EXPECT_EQ(checkProgram(), SelfCheckResult::NoDigest);
    EXPECT_EQ(checkHelp(), SelfCheckResult::Same);
    writeDigest(program);
    machine.ui.cancelAt = machine.ui.cancelQuestions() + 2;
    EXPECT_EQ(checkProgram(), SelfCheckResult::Cancelled);
    machine.ui.cancelAt.reset();
    fs::remove(files.program);
    EXPECT_EQ(checkProgram(), SelfCheckResult::Unreadable);
    EXPECT_EQ(machine.ui.openProgressWindows(), 0);
    EXPECT_TRUE(machine.ui.messages.empty());
}

// A digest that holds a line feed, a zero or a byte above 127 is compared as any other.
TEST_F(SelfCheck, comparesDigestsOfAnyBytes) {
    std::string seen;
    for (int i = 0; i < 400; ++i) {
        const std::string content = "program " + std::to_string(i);
        writeWholeFile(files.program, content);
        writeDigest(content);
        seen += machine.folder.read("App SC");
        ASSERT_EQ(checkProgram(), SelfCheckResult::Same) << i;
    }
    EXPECT_NE(seen.find('\n'), std::string::npos);
    EXPECT_NE(seen.find('\0'), std::string::npos);
}

TEST_F(SelfCheck, tellsAHelpFileThatIsNotTheOneThatWasBuilt) {
    EXPECT_EQ(checkHelp(), SelfCheckResult::Same);
    flipByte(files.help);
    EXPECT_EQ(checkHelp(), SelfCheckResult::Changed);
    EXPECT_EQ(checkProgram(), SelfCheckResult::Same);
    fs::remove(files.help);
    EXPECT_EQ(checkHelp(), SelfCheckResult::Unreadable);
}

TEST_F(SelfCheck, warnsOfWhatDiffersAndOfNothingElse) {
    for (const auto result : {SelfCheckResult::Same, SelfCheckResult::Cancelled}) {
        EXPECT_EQ(core::programWarning(result), nullptr);
        EXPECT_EQ(core::helpWarning(result), nullptr);
    }
    EXPECT_EQ(core::programWarning(SelfCheckResult::NoDigest)->lines.size(), 3U);
    EXPECT_EQ(core::programWarning(SelfCheckResult::Changed)->lines.size(), 11U);
    EXPECT_EQ(core::programWarning(SelfCheckResult::Unreadable),
              core::programWarning(SelfCheckResult::Changed));
    EXPECT_EQ(core::helpWarning(SelfCheckResult::Changed)->title, "Help file integrity check.");
}

TEST(CleanUp, removesReportsAndPlainCopiesThatNobodyHolds) {
    World world;
    const std::vector<std::string> names = {"FileChk",
                                            "DirChk",
                                            "PermsChk",
                                            "RegChk",
                                            "ServsChk",
                                            "FileChk123456789z",
                                            "DirChk123456789z",
                                            "PermsChk123456789z",
                                            "RegChk123456789z",
                                            "ServsChk123456789z",
                                            "Checking Schedule/Scheduled Checking Log File~123456789z",
                                            "Checking Schedule/Scheduled Checking Log File~123456789zm",
                                            "Checking Schedule/Database Checking Schedule123456789z"};
    for (const std::string& name : names)
        writeWholeFile(world.data(name), name);
    fs::remove(world.data("DirChk"));
    fs::create_directory(world.data("RegChk 2"));
    const auto held = world.machine.files.openExclusive(world.data(names.back()));
    core::cleanUp(world.vault());
    for (const std::string& name : names)
        EXPECT_EQ(fs::exists(world.data(name)), name == names.back()) << name;
    EXPECT_TRUE(fs::exists(world.data("Backup Files/Database Index")));
    EXPECT_TRUE(fs::exists(world.data("Checking Schedule/Scheduled Checking Log File~")));
    core::cleanUp(world.vault());
    EXPECT_TRUE(world.machine.ui.messages.empty());
}

class FolderIcons : public testing::TestWithParam<core::FolderIconFile> {
  protected:
    void apply(bool isOn, const core::FolderIconFile& icon = GetParam()) {
        world.set("Config32", isOn ? "1" : "0");
        core::applyFolderIcons(world.platform, world.configuration(), icon);
    }
    std::string file(std::string_view folder) { return world.data(std::string(folder)) + GetParam().name; }
    int count() {
        int there = fs::exists(file("")) ? 1 : 0;
        for (const std::string_view folder : core::kDataFolders)
            there += fs::exists(file(std::string(folder) + "/")) ? 1 : 0;
        return there;
    }

    World world;
};

TEST_P(FolderIcons, standInSixFoldersWhileTheyAreWanted) {
    apply(true);
    EXPECT_EQ(count(), 6);
    EXPECT_EQ(readWholeFile(file("Reports/")), GetParam().text());
    core::FolderIconFile moved = GetParam();
    if (!moved.place.empty()) moved.place += " elsewhere";
    apply(true, moved);
    EXPECT_EQ(readWholeFile(file("Reports/")), moved.text());
    fs::remove(file("Databases/"));
    apply(false);
    EXPECT_EQ(count(), 0);
}

TEST_P(FolderIcons, leaveFilesOfSomebodyElseAlone) {
    for (const std::string& content :
         {std::string("[mine]"), GetParam().text() + "\nmine", std::string(), GetParam().opening + "x\ny"}) {
        writeWholeFile(file("Reports/"), content);
        apply(true);
        EXPECT_EQ(readWholeFile(file("Reports/")), content);
        apply(false);
        EXPECT_EQ(count(), 1);
        EXPECT_EQ(readWholeFile(file("Reports/")), content);
    }
    fs::remove(file("Reports/"));
    fs::create_directory(file("Reports/"));
    fs::remove(world.data("Changed Files"));
    apply(true);
    EXPECT_EQ(count(), 5);
    EXPECT_TRUE(world.machine.ui.messages.empty());
}

INSTANTIATE_TEST_SUITE_P(Core, FolderIcons,
                         testing::Values(core::windowsFolderIcon("C:\\Programs\\Corvalence.exe"),
                                         core::desktopFolderIcon()));

TEST(FolderIconTexts, areThoseOfTheFileManagers) {
    EXPECT_EQ(core::windowsFolderIcon("C:\\Corvalence.exe").text(),
              "[.ShellClassInfo]\r\nConfirmFileOp=0\r\nNoSharing=1\r\nIconFile=C:\\Corvalence.exe\r\n"
              "IconIndex=1");
    EXPECT_EQ(core::desktopFolderIcon().text(), "[Desktop Entry]\nType=Directory\nIcon=corvalence\n");
}

}  // namespace
}  // namespace corvalence::test
