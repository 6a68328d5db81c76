#include "settings/configuration.h"

#include <gtest/gtest.h>

#include "settings/configuration_rules.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using settings::Configuration;
using settings::findConfigurationKey;

class ConfigurationTest : public testing::Test {
  protected:
    void store(const std::string& name, const std::string& text) {
        machine.settings.texts["Software\\Corvalence\\" + name] = text;
    }

    TestPlatform machine;
    Configuration configuration{machine.settings, machine.ui};
};

struct Stored {
    const char* key;
    const char* text;
    const char* read;
};

class StoredText : public ConfigurationTest, public testing::WithParamInterface<Stored> {};

TEST_P(StoredText, IsReadAsItsFallbackWhereItDoesNotServe) {
    store(GetParam().key, GetParam().text);
    EXPECT_EQ(configuration.text(GetParam().key), GetParam().read);
    EXPECT_TRUE(machine.ui.messages.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Configuration, StoredText,
    testing::Values(Stored{"Config1", "x", "x"}, Stored{"Config1", "", "~"}, Stored{"Config1", "\x01", "~"},
                    Stored{"Config1", "ab", "a"}, Stored{"Config2", "2", "1"}, Stored{"Config2", "0", "0"},
                    Stored{"Config2", "nonsense", "1"}, Stored{"Config6", "0", "0"},
                    Stored{"Config6", "11", "10"}, Stored{"Config13", "-1", "2"},
                    Stored{"Config13", " 4", "4"},
                    // A page size of 65000 may be entered, and is out of range when it is read.
                    Stored{"Config15", "64999", "64999"}, Stored{"Config15", "65000", "10000"},
                    Stored{"Config16", "60", "5"}, Stored{"Config17", "x", "x"},
                    Stored{"Config27", "0", "1"}));

TEST_F(ConfigurationTest, SaysRegistryErrorForAMissingKeyAndGoesOn) {
    EXPECT_EQ(configuration.number("Config16"), 5);
    EXPECT_TRUE(machine.ui.saw("Registry error."));
    machine.settings.refusesWriting = true;
    EXPECT_FALSE(configuration.write("Config16", "7"));
    EXPECT_EQ(machine.ui.messages.size(), 2U);
}

// A missing folder key once stood for the folder that the program was started in.
TEST_F(ConfigurationTest, TakesNoFolderForTheOneItRunsIn) {
    EXPECT_THROW(configuration.folder("Changed Files Directory"), base::FileFailure);
    store("Changed Files Directory", "/data");
    EXPECT_EQ(configuration.folder("Changed Files Directory"), "/data/");
}

TEST_F(ConfigurationTest, KeepsBackupsPlainUnlessTheTextIsN) {
    for (const auto& [text, encrypts] : {std::pair("N", true), std::pair("P", false), std::pair("", false)}) {
        store("Config17", text);
        EXPECT_EQ(configuration.encryptsBackups(), encrypts) << text;
    }
}

TEST(ConfigurationKeys, AreFoundByEitherNameAndAreUnique) {
    EXPECT_EQ(findConfigurationKey("config5"), findConfigurationKey("backup-files"));
    EXPECT_EQ(findConfigurationKey("backup\\backup database index"), findConfigurationKey("backup-counter"));
    EXPECT_EQ(findConfigurationKey("Config99"), nullptr);
    for (const auto& row : settings::configurationKeys()) {
        EXPECT_EQ(findConfigurationKey(row.name), &row) << row.name;
        EXPECT_EQ(findConfigurationKey(row.consoleName), &row) << row.consoleName;
        EXPECT_EQ(settings::acceptedText(row, std::string(row.fallback)), row.fallback) << row.name;
    }
}

struct Entry {
    const char* key;
    const char* text;
    bool accepted;
};

class EnteredText : public testing::TestWithParam<Entry> {};

TEST_P(EnteredText, IsJudgedByItsForm) {
    const auto fault = settings::findFault(*findConfigurationKey(GetParam().key), GetParam().text);
    EXPECT_EQ(!fault.has_value(), GetParam().accepted) << fault.value_or("");
}

INSTANTIATE_TEST_SUITE_P(Configuration, EnteredText,
                         testing::Values(Entry{"Config6", "0", false}, Entry{"Config6", "10", true},
                                         Entry{"Config15", "65000", true}, Entry{"Config15", "999", false},
                                         Entry{"Config5", "yes", false}, Entry{"Config5", "01", false},
                                         Entry{"Config1", "/", false}, Entry{"Config1", "~", true},
                                         Entry{"Config1", "ab", false}, Entry{"Config17", "P", true},
                                         Entry{"Config17", "n", false}, Entry{"Config26", "a\nb", false}));

struct Sheet {
    settings::SheetFields fields;
    std::string message;
};

TEST_F(ConfigurationTest, AppliesTheRulesOfTheSheetInTheirOrder) {
    settings::SheetFields good;
    good.suffix = "~";
    const auto with = [&](auto change) {
        settings::SheetFields fields = good;
        change(fields);
        return fields;
    };
    const std::string folder = machine.folder.path();
    const std::vector<Sheet> sheets = {
        {good, ""},
        {with([](auto& f) { f.mails = true, f.recipient = "a@b", f.suffix = "D"; }),
         "The recipient address must be a full Email address"},
        {with([](auto& f) { f.mails = true, f.recipient = "a@b.c"; }), ""},
        {with([](auto& f) { f.suffix = "R"; }),
         "The character to append to the database name should not be 'D', 'P', or 'R'."},
        {with([](auto& f) { f.suffix = "R", f.backsUpDatabases = false; }), ""},
        {with([](auto& f) { f.suffix = ""; }),
         "If you want to backup each database you must enter a character to append to the database name."},
        {with([](auto& f) { f.besideDatabase = false; }),
         "If you want to backup each database you must choose a location for the backup database."},
        {with([&](auto& f) { f.besideDatabase = false, f.backupFolder = folder; }), ""},
        {with([&](auto& f) { f.besideDatabase = false, f.backupFolder = folder + "nowhere"; }),
         native(folder + "nowhere/") + " is not a valid location."},
        {with([](auto& f) { f.besideDatabase = false, f.backupFolder = "*"; }),
         native("*/") + " is not a valid location."},
    };
    for (const Sheet& sheet : sheets) {
        EXPECT_EQ(
            settings::findFault(sheet.fields, machine.files, machine.platform.volumes, machine.platform.paths)
                .value_or(""),
            sheet.message);
    }
}

}  // namespace
}  // namespace corvalence::test
