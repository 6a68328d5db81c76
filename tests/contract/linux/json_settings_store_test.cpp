#include "platform/json_settings_store.h"

#include <gmock/gmock.h>
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
    platform::JsonSettingsStore store_{world_.files, world_.folder / "config/settings.json"};
};

TEST_F(JsonSettings, thatAreDamagedReadAsNothingAndAreNeverOverwritten) {
    for (const std::string& content :
         {std::string(), std::string("{"), std::string("[]"), std::string("null"),
          std::string("{\"Software\\\\Corvalence\\\\Config5\": \"1\"} trailing"),
          std::string("{\"Software\\\\Corvalence\\\\Config5\": \"\xFF\"}"), std::string(100000, '[')}) {
        world_.folder.write("config/settings.json", content);
        EXPECT_TRUE(store_.exists());
        EXPECT_FALSE(store_.read(kKey)) << content;
        EXPECT_FALSE(store_.write(kKey, "1")) << content;
        EXPECT_EQ(world_.folder.read("config/settings.json"), content);
        EXPECT_FALSE(world_.folder.has("config/settings.json.new"));
    }
}

TEST_F(JsonSettings, areOneObjectOfTextsForTheOwnerAlone) {
    EXPECT_FALSE(store_.exists());
    EXPECT_FALSE(store_.read(kKey));
    const mode_t mask = ::umask(0);
    EXPECT_TRUE(store_.write(kKey, "1"));
    ::umask(mask);
    // JSON holds no text that is not UTF-8.
    EXPECT_FALSE(store_.write(kKey, "\xFF"));
    EXPECT_FALSE(store_.write("\xC3", "x"));
    EXPECT_EQ(world_.folder.read("config/settings.json"),
              "{\n    \"Software\\\\Corvalence\\\\Config5\": \"1\"\n}\n");
    struct stat data {};
    ASSERT_EQ(::stat((world_.folder / "config/settings.json").c_str(), &data), 0);
    EXPECT_EQ(data.st_mode & ALLPERMS, 0600U);
}

TEST_F(JsonSettings, keepWhatOthersPutBesideTheirTexts) {
    world_.folder.write("config/settings.json", R"({"a": 5, "b": {"c": [true]}, "d": "text"})");
    EXPECT_FALSE(store_.read("a"));
    EXPECT_EQ(store_.read("d"), "text");
    EXPECT_TRUE(store_.write(kKey, "1"));
    EXPECT_THAT(world_.folder.read("config/settings.json"),
                testing::AllOf(testing::HasSubstr("\"a\": 5"), testing::HasSubstr("true")));
}

TEST_F(JsonSettings, holdTheOldTextWhereverWritingFails) {
    constexpr std::uint64_t kPlaces = 5;  // createFolder, createNew, write, flush, rename
    ASSERT_TRUE(store_.write(kKey, "old"));
    for (std::uint64_t at = 1; at <= kPlaces; ++at) {
        world_.faults.failAt(at, base::Cause::DiskFull, FaultPlan::Lasts::FromThere);
        EXPECT_FALSE(store_.write(kKey, "new")) << at;
        EXPECT_EQ(store_.read(kKey), "old") << at;
        EXPECT_FALSE(world_.folder.has("config/settings.json.new")) << at;
    }
    for (std::uint64_t at = 1; at <= kPlaces; ++at) {
        const auto work = [&] {
            world_.faults.endProcessAt(at);
            return store_.write(kKey, "new") ? 0 : 1;
        };
        EXPECT_EQ(inChild(work), FaultPlan::kEndedExitCode) << at;
        EXPECT_EQ(store_.read(kKey), "old") << at;
    }
    // What the last ended process left beside the file is in nobody's way.
    EXPECT_TRUE(world_.folder.has("config/settings.json.new"));
    world_.faults.clear();
    EXPECT_TRUE(store_.write(kKey, "new"));
    EXPECT_EQ(store_.read(kKey), "new");
    EXPECT_FALSE(world_.folder.has("config/settings.json.new"));
}

TEST_F(JsonSettings, waitForNobodyWhoWritesThemAtThatMoment) {
    ASSERT_TRUE(store_.write(kKey, "old"));
    const auto other = world_.system.files.createNew(world_.folder / "config/settings.json.new");
    EXPECT_FALSE(store_.write(kKey, "new"));
    EXPECT_TRUE(world_.folder.has("config/settings.json.new"));
}

}  // namespace
}  // namespace corvalence::test
