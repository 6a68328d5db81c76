#include "shell/configuration_sheet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>

#include "test_platform.h"

namespace corvalence::test {
namespace {

using shell::SheetPages;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kRoot = "Software\\Corvalence\\";

/// Remembers what is written, in its order.
class LoggedSettings : public MapSettingsStore {
  public:
    std::vector<std::string> writes;

    bool write(const std::string& keyPath, const std::string& text) override {
        writes.push_back(keyPath.substr(kRoot.size()) + "=" + text);
        return MapSettingsStore::write(keyPath, text);
    }
};

class SessionStart : public platform::AutoStart {
  public:
    std::vector<std::string> calls;
    bool refuses = false;

    bool enable(const std::string& program) override {
        calls.push_back(program);
        return !refuses;
    }
    bool disable() override {
        calls.push_back("off");
        return !refuses;
    }
    bool isEnabled() override { return !calls.empty() && calls.back() != "off"; }
};

/// Does to the fields what is written down, sheet after sheet; then cancels for ever.
class ScriptedSheet : public shell::SheetDialog {
  public:
    using Step = std::function<bool(SheetPages&)>;
    std::deque<Step> steps;
    int shown = 0;

    bool show(SheetPages& pages) override {
        ++shown;
        if (steps.empty()) return false;
        const Step step = steps.front();
        steps.pop_front();
        return step(pages);
    }
};

class ConfigurationSheet : public testing::Test {
  protected:
    ConfigurationSheet() {
        for (const settings::ConfigurationKey& key : settings::configurationKeys())
            store(std::string(key.name), std::string(key.fallback));
    }
    void store(const std::string& name, const std::string& text) {
        settings.texts[std::string(kRoot) + name] = text;
    }
    std::string stored(const std::string& name) { return settings.texts[std::string(kRoot) + name]; }
    SheetPages run() {
        return shell::ConfigurationSheet(platform, configuration, start, "/opt/corvalence").run(sheet);
    }
    /// A confirmed sheet after this change.
    void confirm(std::function<void(SheetPages&)> change) {
        sheet.steps.push_back([change](SheetPages& pages) {
            change(pages);
            return true;
        });
    }
    std::string told() {
        std::string text = machine.ui.messages.empty() ? "" : machine.ui.messages.front().text;
        machine.ui.messages.clear();
        return text;
    }

    TestPlatform machine;
    LoggedSettings settings;
    platform::Platform platform{
        machine.files,          machine.access,       machine.volumes,     machine.status,
        machine.system.process, machine.system.types, machine.clock,       settings,
        machine.sound,          machine.ui,           machine.system.paths};
    settings::Configuration configuration{settings, machine.ui};
    SessionStart start;
    ScriptedSheet sheet;
};

TEST_F(ConfigurationSheet, storesWhatWasChangedInItsOrder) {
    const std::string folder = machine.folder.path();
    confirm([&](SheetPages& pages) {
        pages = {{true, "+", false, folder.substr(0, folder.size() - 1), false, false},
                 {false, shell::WarningChoice::File, "/s.wav"},
                 {true, false, false},
                 {65000},
                 {3, true, 59, true, false, true, folder},
                 {true, true, false, "a@b.c", 30, "smtp://h", false, "s@b.c", "/l", "/a"}};
    });
    const SheetPages pages = run();
    EXPECT_THAT(
        settings.writes,
        ElementsAre("Config21=1", "Config32=0", "Config22=0", "Config17=P", "Background Checking=Y",
                    "Config23=1", "Config24=1", "Config25=0", "Config27=30", "Config26=a@b.c",
                    "Mail Server=smtp://h", "Mail TLS=0", "Mail Sender=s@b.c", "Mail Login=/l",
                    "Mail Authorities=/a", "Config14=/s.wav", "Config12=0", "Config15=65000", "Config16=59",
                    "Config1=+", "Config5=0", "Config13=4", "Config20=0", "Config3=" + folder, "Config4=0",
                    "Config6=3", "Complete Walk=1", "Walk Roots=" + folder));
    EXPECT_EQ(pages.backup.folder, folder);
    EXPECT_THAT(start.calls, ElementsAre("/opt/corvalence"));
    EXPECT_THAT(machine.ui.messages, IsEmpty());
    settings.writes.clear();
    confirm([](SheetPages& now) { now.background.startsWithSession = false; });
    run();
    // Accepted as an entry, such a page is out of range when it is read.
    EXPECT_THAT(settings.writes, ElementsAre("Background Checking=N", "Config15=10000"));
    EXPECT_THAT(start.calls, ElementsAre("/opt/corvalence", "off"));
}

TEST_F(ConfigurationSheet, readsFallBacksAndWritesThemOnCancel) {
    for (const auto& [key, text] : {std::pair{"Config6", "11"},
                                    {"Config15", "65000"},
                                    {"Config16", "0"},
                                    {"Config17", "x"},
                                    {"Config13", "5"},
                                    {"Background Checking", "y"}})
        store(key, text);
    sheet.steps.push_back([](SheetPages& pages) {
        EXPECT_EQ(pages.look.recentCount, 10);
        EXPECT_EQ(pages.pageSize.rows, 10000);
        EXPECT_EQ(pages.look.infoBarSeconds, 5);
        EXPECT_FALSE(pages.backup.encrypts);
        EXPECT_EQ(pages.audio.warning, shell::WarningChoice::Alarm);
        EXPECT_FALSE(pages.background.startsWithSession);
        pages.look.recentCount = 3;
        pages.backup.suffix = "";
        return false;
    });
    EXPECT_EQ(run().look.recentCount, 10);
    EXPECT_THAT(settings.writes, ElementsAre("Config17=P", "Background Checking=N", "Config15=10000",
                                             "Config16=5", "Config13=2", "Config6=10"));
    EXPECT_THAT(start.calls, ElementsAre("off"));
    EXPECT_EQ(sheet.shown, 1);
}

TEST_F(ConfigurationSheet, isShownAgainWithWhatWasEnteredWhereARuleIsBroken) {
    const auto fault = [&](std::function<void(SheetPages&)> change) {
        settings.writes.clear();
        confirm(change);
        SheetPages again;
        sheet.steps.push_back([&](SheetPages& pages) {
            again = pages;
            return false;
        });
        run();
        EXPECT_THAT(settings.writes, IsEmpty());
        SheetPages expected =
            shell::ConfigurationSheet(platform, configuration, start, "/opt/corvalence").load();
        change(expected);
        EXPECT_EQ(again.email.recipient, expected.email.recipient);
        EXPECT_EQ(again.backup.suffix, expected.backup.suffix);
        return told();
    };
    const auto elsewhere = [&](const std::string& folder) {
        return fault([&](SheetPages& pages) {
            pages.backup.besideDatabase = false;
            pages.backup.folder = folder;
        });
    };
    EXPECT_EQ(fault([](SheetPages& pages) {
                  pages.email.isEnabled = true;
                  pages.email.recipient = "a@b";
                  pages.backup.suffix = "P";
              }),
              "The recipient address must be a full Email address");
    EXPECT_EQ(fault([](SheetPages& pages) { pages.backup.suffix = "P"; }),
              "The character to append to the database name should not be 'D', 'P', or 'R'.");
    EXPECT_EQ(
        fault([](SheetPages& pages) { pages.backup.suffix = ""; }),
        "If you want to backup each database you must enter a character to append to the database name.");
    EXPECT_EQ(elsewhere(""),
              "If you want to backup each database you must choose a location for the backup database.");
    const std::string none = machine.folder / "none";
    EXPECT_EQ(elsewhere(none), machine.system.paths.withSeparator(none) + " is not a valid location.");
    EXPECT_EQ(elsewhere(".."), machine.system.paths.withSeparator("..") + " is not a valid location.");
    for (const std::string& root : {none, std::string(".")}) {
        EXPECT_EQ(
            fault([&](SheetPages& pages) { pages.look.walkRoots = machine.folder.path() + "\n" + root; }),
            root + " is not a valid location.");
    }
    EXPECT_EQ(fault([](SheetPages& pages) { pages.pageSize.rows = 999; }),
              "Config15 takes a whole number from 1000 to 65000.");
    EXPECT_EQ(fault([](SheetPages& pages) { pages.look.recentCount = 0; }),
              "Config6 takes a whole number from 1 to 10.");
    EXPECT_EQ(fault([](SheetPages& pages) { pages.backup.suffix = "/"; }),
              "Config1 takes a character that a file name may hold.");
    // What is forbidden beside backups is stored without them.
    confirm([](SheetPages& pages) { pages.backup.suffix = "P", pages.backup.backsUpDatabases = false; });
    run();
    EXPECT_EQ(stored("Config1"), "P");
}

TEST_F(ConfigurationSheet, goesOnWithTheFieldsOfTheRunThatWasRight) {
    confirm([](SheetPages& pages) { pages.backup.suffix = "D", pages.look.infoBarSeconds = 7; });
    confirm([](SheetPages& pages) {
        EXPECT_EQ(pages.look.infoBarSeconds, 7);
        pages.backup.suffix = "";
    });
    confirm([](SheetPages& pages) { pages.backup.suffix = "+"; });
    run();
    EXPECT_EQ(sheet.shown, 3);
    EXPECT_EQ(machine.ui.messages.size(), 2U);
    EXPECT_THAT(settings.writes, ElementsAre("Config16=7", "Config1=+"));
}

// Somebody whose settings break a rule already is told, but not held.
TEST_F(ConfigurationSheet, canBeLeftWhereTheStoredFieldsBreakARule) {
    store("Config1", "D");
    run();
    EXPECT_EQ(sheet.shown, 2);
    EXPECT_EQ(machine.ui.messages.size(), 1U);
    EXPECT_EQ(stored("Config1"), "D");
}

TEST_F(ConfigurationSheet, cutsTheRecentListAndTellsWhatCannotBeStored) {
    store("Recent File List\\File1", "one");
    store("Recent File List\\File2", "two");
    confirm([](SheetPages& pages) { pages.look.recentCount = 1; });
    run();
    EXPECT_EQ(stored("Recent File List\\File1") + stored("Recent File List\\File2"), "one");
    confirm([](SheetPages& pages) { pages.look.keepsRecent = false; });
    run();
    EXPECT_EQ(stored("Recent File List\\File1"), "");
    settings.refusesWriting = true;
    start.refuses = true;
    confirm([](SheetPages& pages) { pages.look.infoBarSeconds = 8; });
    run();
    ASSERT_EQ(machine.ui.messages.size(), 2U);
    EXPECT_EQ(machine.ui.messages[1].text, "Registry error.");
}

TEST_F(ConfigurationSheet, enablesFieldsByOthersAndPlaysItsSounds) {
    shell::BackupPage backup;
    EXPECT_TRUE(backup.canSetSuffix() && backup.canSetEncrypts() && !backup.canSetFolder());
    backup.besideDatabase = false;
    EXPECT_TRUE(backup.canSetFolder());
    backup.backsUpDatabases = backup.backsUpFiles = false;
    EXPECT_FALSE(backup.canSetSuffix() || backup.canSetFolder() || backup.canSetEncrypts());
    EXPECT_FALSE(shell::EmailPage().canSetFields());
    EXPECT_EQ(shell::entryRange("Config15").highest, 65000);
    EXPECT_EQ(shell::entryRange("Config6").lowest, 1);
    EXPECT_TRUE(shell::BackupPage::takesFolder("C:\\", {'\\', true}));
    EXPECT_FALSE(shell::BackupPage::takesFolder("\\\\server\\share", {'\\', true}));
    EXPECT_TRUE(shell::BackupPage::takesFolder("/mnt", {}));
    EXPECT_FALSE(shell::BackupPage::takesFolder("", {}));
    shell::AudioPage audio;
    audio.soundFile = "/s.wav";
    shell::AudioPage::playBleep(machine.sound);
    for (int choice = 0; choice <= 4; ++choice)
        audio.play(machine.sound, static_cast<shell::WarningChoice>(choice));
    EXPECT_THAT(machine.sound.resources, ElementsAre("blp", "clm", "zaaz", "rml"));
    EXPECT_THAT(machine.sound.files, ElementsAre("/s.wav"));
}

}  // namespace
}  // namespace corvalence::test
