#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;

class Config : public testing::Test {
  protected:
    Config() { console.done({"init"}); }
    std::string get(const std::string& key) { return console.done({"config", "get", key}).out; }
    int set(const std::string& key, const std::string& text) {
        last = console.run({"config", "set", key, "--", text});
        return last.code;
    }
    Console console;
    Outcome last;
};

TEST_F(Config, keysAreFoundByEitherNameInEitherCase) {
    EXPECT_EQ(set("CONFIG15", "2000"), 0);
    EXPECT_EQ(get("page-size"), "2000\n");
    EXPECT_EQ(get("Backup\\Backup Files Directory"), console.home("Backup Files/\n"));
    EXPECT_THAT(console.done({"config", "list"}).out,
                HasSubstr("\nConfig15\tpage-size\t2000\trows on one page"));
    // What stands in the file but lies outside the range counts as the fall-back.
    const std::string settings = console.folder.read("home/settings.json");
    console.folder.write("home/settings.json",
                         std::string(settings).replace(settings.find("\"2000\""), 6, "\"77\""));
    EXPECT_EQ(get("Config15"), "10000\n");
}

TEST_F(Config, whatAKeyCannotHaveIsRefused) {
    std::filesystem::create_directory(console.path("backups"));
    for (const auto& [key, text] : std::vector<std::pair<std::string, std::string>>{{"Config15", "77"},
                                                                                    {"Config15", "2000x"},
                                                                                    {"Config15", ""},
                                                                                    {"Config17", "X"},
                                                                                    {"Config1", "ab"},
                                                                                    {"Config1", "/"},
                                                                                    {"Config1", "D"},
                                                                                    {"Config1", ""},
                                                                                    {"Config23", "1"},
                                                                                    {"Config4", "0"},
                                                                                    {"backup-folder", "none"},
                                                                                    {"data-root", ""},
                                                                                    {"Config14", "a\nb"}}) {
        const std::string before = get(key);
        EXPECT_EQ(set(key, text), 2) << key << " " << text;
        EXPECT_THAT(last.err, testing::Not(testing::IsEmpty()));
        EXPECT_EQ(get(key), before);
    }
    // The same, once the keys that belong to it are there.
    EXPECT_EQ(set("email-recipient", "me@example.org"), 0);
    EXPECT_EQ(set("Config23", "1"), 0);
    EXPECT_EQ(set("Config26", "nobody"), 2);
    EXPECT_EQ(set("Config3", "backups"), 0);
    EXPECT_EQ(get("Config3"), console.path("backups\n"));
    EXPECT_EQ(set("Config4", "0"), 0);
    std::filesystem::remove(console.path("backups"));
    EXPECT_EQ(set("Config3", "elsewhere"), 2);
    EXPECT_EQ(set("Config15", "3000"), 0);  // a fault that was there already keeps nobody from other keys
    EXPECT_EQ(set("Config1", "-"), 0);
}

TEST_F(Config, foldersAreStoredWhole) {
    std::filesystem::create_directory(console.path("changed"));
    EXPECT_EQ(set("changed-folder", "./changed/"), 0);
    EXPECT_EQ(get("Changed Files Directory"), console.path("changed/\n"));
    const bool hasLink = makeLink(console.home(), console.path("link"));
    const auto setRoot = [&](const std::string& root) {
        return console.run({"--home", console.home(), "config", "set", "data-root", root}).code;
    };
    if (hasLink) {
        EXPECT_EQ(setRoot("link"), 0);
        EXPECT_EQ(get("data-root"), console.path("link/\n"));
    }
    EXPECT_EQ(setRoot("changed"), 2);  // --home would not find its way back
    EXPECT_EQ(set("data-root", "changed"), 0);
}

TEST_F(Config, theCompleteWalkTakesHiddenNames) {
    console.write(".hidden", "1");
    console.done({"create", "file-contents", "db"});
    EXPECT_EQ(console.done({"add", "db", "--location", ".", "--json"}).json().at("added"), 0);
    EXPECT_EQ(set("complete-walk", "1"), 0);
    EXPECT_EQ(console.done({"add", "db", "--location", ".", "--json"}).json().at("added"), 1);
}

}  // namespace
}  // namespace corvalence::test
