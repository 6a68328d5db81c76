#include <gtest/gtest.h>

#include "system_back_end.h"
#include "temp_folder.h"

namespace corvalence::test {
namespace {

TEST(SystemStatus, tellsMemoryAndTheDiskOfAPath) {
    SystemBackEnd system;
    constexpr std::uint64_t kMebibyte = 1 << 20;
    const auto memory = system.status.memory();
    ASSERT_TRUE(memory);
    EXPECT_GT(memory->available, kMebibyte);
    EXPECT_GT(memory->total, memory->available);

    const TempFolder folder;
    const auto disk = system.status.disk(folder.path());
    ASSERT_TRUE(disk);
    EXPECT_GT(disk->available, kMebibyte);
    EXPECT_GE(disk->total, disk->available);
    EXPECT_EQ(system.status.disk(folder.write("a", "x"))->total, disk->total);
    EXPECT_FALSE(system.status.disk(folder / "none"));
    EXPECT_FALSE(system.status.disk(std::string("/\0", 2)));
}

}  // namespace
}  // namespace corvalence::test
