#include "platform/file_copy.h"

#include <gtest/gtest.h>

#include "failure_of.h"
#include "test_platform.h"

namespace corvalence::test {
namespace {

using base::Cause;

TEST(CopyBytes, TakesExactlyTheLengthFromWhereItStands) {
    TestPlatform machine;
    const auto from = machine.files.openShared(machine.folder.write("digits", "0123456789"));
    auto to = machine.files.createNew(machine.folder / "part");
    from->seek(3);
    platform::copyBytes(*from, *to, 0);
    platform::copyBytes(*from, *to, 4);
    to = machine.files.createNew(machine.folder / "rest");
    EXPECT_EQ(machine.folder.read("part"), "3456");
    EXPECT_EQ(causeOf([&] { platform::copyBytes(*from, *to, 4); }), Cause::EndOfFile);
}

}  // namespace
}  // namespace corvalence::test
