#include "platform/file_copy.h"

#include <gtest/gtest.h>

#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;

class Copying : public testing::Test {
  protected:
    Copying() {
        world_.folder.write("from", content_);
        world_.folder.write("to", "old");
    }
    Cause causeOfCopy() {
        return causeOf([&] {
            platform::copyWhole(world_.files, world_.folder / "from", world_.folder / "to",
                                world_.folder / "beside");
        });
    }

    TestPlatform world_;
    // Two whole blocks and a piece, so that a copy takes several writes.
    const std::string content_ = std::string(2 * platform::kBlockSize, 'a') + "c";
};

TEST_F(Copying, leavesTheOldOrTheNewFileWhereverItFails) {
    constexpr std::uint64_t kPlaces = 6;  // create, three writes, flush, rename
    for (std::uint64_t at = 1; at <= kPlaces; ++at) {
        world_.faults.failAt(at, Cause::DiskFull, FaultPlan::Lasts::FromThere);
        EXPECT_EQ(causeOfCopy(), Cause::DiskFull) << at;
        EXPECT_EQ(world_.folder.read("to"), "old") << at;
        EXPECT_FALSE(world_.folder.has("beside")) << at;
    }
    world_.faults.clear();
    EXPECT_EQ(causeOfCopy(), Cause::None);
    EXPECT_EQ(world_.folder.read("to"), content_);
    EXPECT_EQ(world_.faults.operations(), kPlaces);
}

TEST_F(Copying, takesExactlyTheLengthFromWhereItStands) {
    const auto from = world_.files.openShared(world_.folder.write("digits", "0123456789"));
    const auto to = world_.files.createNew(world_.folder / "part");
    from->seek(3);
    platform::copyBytes(*from, *to, 0);
    platform::copyBytes(*from, *to, 4);
    EXPECT_EQ(world_.folder.read("part"), "3456");
    EXPECT_EQ(causeOf([&] { platform::copyBytes(*from, *to, 4); }), Cause::EndOfFile);
}

}  // namespace
}  // namespace corvalence::test
