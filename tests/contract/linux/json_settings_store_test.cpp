#include "platform/linux/json_settings_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "child_process.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

constexpr const char* kKey = "Software\\Corvalence\\Config5";

class JsonSettings : public testing::Test {
  protected:
    TestPlatform world_;
    platform::linux_system::JsonSettingsStore store_{world_.files, world_.folder / "settings.json"};
};

class DamagedSettings : public JsonSettings, public testing::WithParamInterface<std::string> {};

TEST_P(DamagedSettings, areReadAsNothingAndNeverOverwritten) {
    world_.folder.write("settings.json", GetParam());
    EXPECT_TRUE(store_.exists());
    EXPECT_FALSE(store_.read(kKey));
    EXPECT_FALSE(store_.write(kKey, "1"));
    EXPECT_EQ(world_.folder.read("settings.json"), GetParam());
    EXPECT_EQ(world_.system.files.list(world_.folder.path()).size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Contents, DamagedSettings,
                         testing::Values("", "{", "[]", "null", "\"text\"", "{\"a\": \"b\"",
                                         "{\"Software\\\\Corvalence\\\\Config5\": \"1\"} trailing",
                                         "{\"Software\\\\Corvalence\\\\Config5\": \"\xFF\"}",
                                         std::string(100000, '['), std::string("\0\0\0\0", 4)));

TEST_F(JsonSettings, areOneObjectOfTextsThatAnyoneCanReadButOnlyTheOwnerMay) {
    const mode_t mask = ::umask(0);
    EXPECT_TRUE(store_.write(kKey, "1"));
    ::umask(mask);
    EXPECT_EQ(world_.folder.read("settings.json"),
              "{\n    \"Software\\\\Corvalence\\\\Config5\": \"1\"\n}\n");
    struct stat data {};
    ASSERT_EQ(::stat((world_.folder / "settings.json").c_str(), &data), 0);
    EXPECT_EQ(data.st_mode & ALLPERMS, 0600U);
}

TEST_F(JsonSettings, keepWhatOthersPutBesideTheirTexts) {
    world_.folder.write("settings.json", R"({"a": 5, "b": {"c": [true]}, "d": "text"})");
    EXPECT_FALSE(store_.read("a"));
    EXPECT_EQ(store_.read("d"), "text");
    EXPECT_TRUE(store_.write(kKey, "1"));
    const std::string content = world_.folder.read("settings.json");
    EXPECT_NE(content.find("\"a\": 5"), std::string::npos) << content;
    EXPECT_NE(content.find("true"), std::string::npos) << content;
}

TEST_F(JsonSettings, refuseTextsThatJsonCannotHold) {
    EXPECT_TRUE(store_.write(kKey, "old"));
    EXPECT_FALSE(store_.write(kKey, "\xFF"));
    EXPECT_FALSE(store_.write("\xC3", "x"));
    EXPECT_EQ(store_.read(kKey), "old");
}

TEST_F(JsonSettings, holdTheOldTextWhereverWritingFails) {
    ASSERT_TRUE(store_.write(kKey, "old"));
    world_.faults.clear();
    ASSERT_TRUE(store_.write(kKey, "old"));
    const std::uint64_t places = world_.faults.operations();
    EXPECT_EQ(places, 5U);  // createFolder, createNew, write, flush, rename
    for (std::uint64_t at = 1; at <= places; ++at) {
        world_.faults.failAt(at, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
        EXPECT_FALSE(store_.write(kKey, "new")) << at;
        EXPECT_EQ(store_.read(kKey), "old") << at;
        EXPECT_EQ(world_.system.files.list(world_.folder.path()).size(), 1U) << at;
    }
    for (std::uint64_t at = 1; at <= places; ++at) {
        EXPECT_EQ(inChild([&] {
                      world_.faults.endProcessAt(at);
                      return store_.write(kKey, "new") ? 0 : 1;
                  }),
                  FaultPlan::kEndedExitCode);
        EXPECT_EQ(store_.read(kKey), "old") << at;
    }
    // What the last ended process left beside the file is in nobody's way.
    world_.faults.clear();
    EXPECT_TRUE(world_.folder.has("settings.json.new"));
    EXPECT_TRUE(store_.write(kKey, "new"));
    EXPECT_EQ(store_.read(kKey), "new");
    EXPECT_FALSE(world_.folder.has("settings.json.new"));
}

TEST_F(JsonSettings, waitForNobodyWhoWritesThemAtThatMoment) {
    ASSERT_TRUE(store_.write(kKey, "old"));
    const auto other = world_.system.files.createNew(world_.folder / "settings.json.new");
    EXPECT_FALSE(store_.write(kKey, "new"));
    EXPECT_EQ(store_.read(kKey), "old");
    EXPECT_TRUE(world_.folder.has("settings.json.new"));
}

}  // namespace
}  // namespace corvalence::test
