#include <gtest/gtest.h>

#include <array>
#include <map>

#include "failure_of.h"
#include "platform/windows/backup_streams.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

class Streams : public testing::Test {
  protected:
    /// Name and content of every stream, read a few bytes at a time.
    std::map<std::string, std::string> streamsOf(const std::string& path) {
        std::map<std::string, std::string> all;
        const auto reader = streams_.open(path);
        for (platform::StreamEntry entry; reader->next(entry);) {
            std::string& content = all[entry.name];
            std::array<std::uint8_t, 7> block{};
            while (const std::size_t count = reader->read(block))
                content += base::textOf(base::ByteView(block).first(count));
            EXPECT_EQ(entry.size, content.size()) << entry.name;
        }
        return all;
    }

    platform::windows_system::BackupStreams streams_;
    TempFolder folder_;
};

TEST_F(Streams, ofFilesAndFoldersAreGivenByName) {
    const std::string file = folder_.write("a", "the content");
    const auto failure = failureOf([&] { streamsOf(file); });
    if (failure && streams_.isNotSupported(*failure)) GTEST_SKIP() << "this system does not do BackupRead";
    EXPECT_TRUE(streamsOf(file).empty());
    folder_.write("a:summary", "some words");
    folder_.write("a:empty", "");
    folder_.write("b\\c", "x");
    folder_.write("b:note", "on a folder");
    EXPECT_EQ(streamsOf(file),
              (std::map<std::string, std::string>{{"summary", "some words"}, {"empty", ""}}));
    EXPECT_EQ(streamsOf(folder_ / "b"), (std::map<std::string, std::string>{{"note", "on a folder"}}));
    // Names alone, without reading.
    const auto reader = streams_.open(file);
    platform::StreamEntry entry;
    EXPECT_TRUE(reader->next(entry) && reader->next(entry) && !reader->next(entry));
}

TEST_F(Streams, ofWhatIsNotThereAreToldFromThoseOfASystemWithoutStreams) {
    const auto failure = failureOf([&] { streams_.open(folder_ / "none"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->cause(), base::Cause::FileNotFound);
    EXPECT_FALSE(streams_.isNotSupported(*failure));
    // A folder opens as well, whatever the reading of it gives.
    EXPECT_EQ(causeOf([&] { streams_.open(folder_.path()); }), base::Cause::None);
}

}  // namespace
}  // namespace corvalence::test
