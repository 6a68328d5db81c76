#include "platform/file_copy.h"

#include <gtest/gtest.h>

#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;

class CopyWhole : public testing::Test {
  protected:
    CopyWhole() {
        world_.folder.write("from", content_);
        world_.folder.write("to", "old");
    }
    void copy() {
        platform::copyWhole(world_.files, world_.folder / "from", world_.folder / "to",
                            world_.folder / "beside");
    }

    TestPlatform world_;
    // Two whole blocks and a piece, so that a copy takes several writes.
    const std::string content_ =
        std::string(platform::kBlockSize, 'a') + std::string(platform::kBlockSize, 'b') + "c";
};

TEST_F(CopyWhole, leavesTheOldOrTheNewFileWhereverItFails) {
    world_.faults.clear();
    copy();
    EXPECT_EQ(world_.folder.read("to"), content_);
    const std::uint64_t places = world_.faults.operations();
    EXPECT_EQ(places, 6U);  // create, three writes, flush, rename
    for (const auto lasts : {FaultPlan::Lasts::Once, FaultPlan::Lasts::FromThere}) {
        for (std::uint64_t at = 1; at <= places; ++at) {
            world_.folder.write("to", "old");
            world_.faults.failAt(at, Cause::DiskFull, lasts);
            EXPECT_EQ(causeOf([&] { copy(); }), Cause::DiskFull) << at;
            EXPECT_TRUE(world_.faults.hasStruck()) << at;
            EXPECT_EQ(world_.folder.read("to"), "old") << at;
            EXPECT_FALSE(world_.folder.has("beside")) << at;
        }
    }
}

TEST_F(CopyWhole, tellsAReadErrorFromAnEnd) {
    world_.faults.failReads("from", platform::kBlockSize);
    EXPECT_EQ(causeOf([&] { copy(); }), Cause::Generic);
    EXPECT_EQ(world_.folder.read("to"), "old");
    EXPECT_FALSE(world_.folder.has("beside"));
}

TEST_F(CopyWhole, doesNotTouchAFileThatStandsBeside) {
    world_.folder.write("beside", "somebody else's");
    EXPECT_EQ(causeOf([&] { copy(); }), Cause::AccessDenied);
    EXPECT_EQ(world_.folder.read("beside"), "somebody else's");
    EXPECT_EQ(world_.folder.read("to"), "old");
}

TEST_F(CopyWhole, anEmptyFileIsCopiedToo) {
    world_.folder.write("from", "");
    copy();
    EXPECT_EQ(world_.folder.read("to"), "");
}

TEST(CopyBytes, takesExactlyTheLengthFromWhereItStands) {
    TestPlatform world;
    world.folder.write("from", "0123456789");
    const auto from = world.files.openShared(world.folder / "from");
    const auto to = world.files.createNew(world.folder / "to");
    from->seek(3);
    platform::copyBytes(*from, *to, 0);
    platform::copyBytes(*from, *to, 4);
    EXPECT_EQ(world.folder.read("to"), "3456");
    EXPECT_EQ(causeOf([&] { platform::copyBytes(*from, *to, 4); }), Cause::EndOfFile);
    EXPECT_EQ(causeOf([&] { platform::removeQuietly(world.files, world.folder / "none"); }), Cause::None);
}

}  // namespace
}  // namespace corvalence::test
