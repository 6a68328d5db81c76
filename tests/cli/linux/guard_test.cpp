#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "console.h"

namespace corvalence::test {
namespace {

using testing::HasSubstr;

/// The folder of an installation under the modes of this system.
class GuardedHome : public testing::Test {
  protected:
    GuardedHome() {
        console.done({"init"});
        console.done({"create", "file-contents", "db"});
        setMode(0700);
    }
    void setMode(mode_t mode) { EXPECT_EQ(::chmod(console.home().c_str(), mode), 0); }
    mode_t mode() {
        struct stat data {};
        EXPECT_EQ(::stat(console.home().c_str(), &data), 0);
        return data.st_mode & ALLPERMS;
    }

    Console console;
};

TEST_F(GuardedHome, IsTightenedWhereTheUserAgrees) {
    EXPECT_THAT(console.done({"guard", "show"}).out, HasSubstr("\tother\t\tnothing\n"));
    EXPECT_EQ(console.done({"guard", "strengthen", "--json"}).json().at("removed"), 0);
    console.run({"guard", "show", "--accept"});
    setMode(0755);
    const Outcome changed = console.run({"guard", "check"});
    EXPECT_EQ(changed.code, 1);
    EXPECT_THAT(changed.out, HasSubstr("Previous permissions:\n"));
    EXPECT_THAT(changed.out, HasSubstr("Permissions now:\n"));
    EXPECT_THAT(changed.out, HasSubstr("! other\tother\tRead, Execute, List Folder"));
    EXPECT_THAT(changed.err, HasSubstr("THE CORVALENCE FOLDER PERMISSIONS HAVE CHANGED!"));
    const Outcome shown = console.run({"guard", "show"});
    EXPECT_EQ(shown.code, 1);
    EXPECT_THAT(shown.err, HasSubstr("Recommendation : Strengthen."));
    EXPECT_EQ(console.run({"guard", "strengthen"}).code, 5) << "nobody there to agree";
    console.terminal.isThere = true;
    console.terminal.secrets = {"secret"};
    console.terminal.lines = {"n"};
    EXPECT_EQ(console.run({"guard", "strengthen"}).code, 1);
    EXPECT_EQ(mode(), 0755U);
    console.terminal.isThere = false;
    console.done({"--yes", "guard", "strengthen"});
    EXPECT_EQ(mode(), 0700U);
    console.done({"guard", "check"});
}

}  // namespace
}  // namespace corvalence::test
