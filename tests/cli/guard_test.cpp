#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "console.h"

namespace corvalence::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

class SelfDefence : public testing::Test {
  protected:
    SelfDefence() {
        console.process.program = CORVALENCECTL;
        console.write("a", "1");
    }
    int code(std::vector<std::string> arguments) { return console.run(std::move(arguments)).code; }

    Console console;
};

TEST_F(SelfDefence, ComparesTheBuiltProgramWithTheDigestOfItsBuild) {
    const std::string name = fs::path(CORVALENCECTL).filename().string();
    console.input.clear();
    EXPECT_EQ(console.done({"self-check"}).out, std::string(CORVALENCECTL) + " is as it was built.\n");

    const std::string program = console.path(name);
    const std::string digest = console.path("App SC corvalencectl");
    fs::copy_file(CORVALENCECTL, program);
    fs::copy_file(fs::path(CORVALENCECTL).parent_path() / "App SC corvalencectl", digest);
    console.process.program = program;
    EXPECT_EQ(console.done({"self-check", "--json"}).json(),
              (json{{"programs", {{{"path", program}, {"digest", digest}, {"result", "same"}}}}}));
    const std::string built = readWholeFile(program);
    writeWholeFile(program, built + "x");
    Outcome checked = console.run({"self-check"});
    EXPECT_EQ(checked.code, 1);
    EXPECT_THAT(checked.out, HasSubstr("HAS BEEN CHANGED !"));
    fs::remove(digest);
    EXPECT_EQ(console.run({"self-check", "--json"}).json().at("programs").at(0).at("result"), "no digest");
    writeWholeFile(program, built);
    fs::copy_file(fs::path(CORVALENCECTL).parent_path() / "App SC corvalencectl", digest);

    // The graphical program beside it is looked at as well.
    writeWholeFile(console.path("App SC"), readWholeFile(digest));
    checked = console.run({"self-check"});
    EXPECT_EQ(checked.code, 1);
    EXPECT_THAT(checked.out, HasSubstr("corvalencectl"));
    EXPECT_THAT(checked.out, HasSubstr(" cannot be read."));
    std::string window = name;
    fs::copy_file(program, console.path(window.erase(window.find("ctl"), 3)));
    EXPECT_THAT(console.done({"self-check"}).out, HasSubstr(console.path(window) + " is as it was built.\n"));
    console.process.cancelAt(1);
    EXPECT_EQ(code({"self-check"}), 5);
}

// Only the graphical program knew the help's digest.
TEST_F(SelfDefence, ComparesTheHelpWithTheDigestOfItsBuild) {
    const std::string program = console.path(fs::path(CORVALENCECTL).filename().string());
    fs::copy_file(CORVALENCECTL, program);
    fs::copy_file(fs::path(CORVALENCECTL).parent_path() / "App SC corvalencectl",
                  console.path("App SC corvalencectl"));
    console.process.program = program;
    const std::string help = console.path("Corvalence.help");
    console.builtHelp = crypto::Md5::of(base::bytesOf("the help"));
    EXPECT_THAT(console.done({"self-check"}).out, testing::Not(HasSubstr(help))) << "a server has none";
    writeWholeFile(help, "the help");
    EXPECT_THAT(console.done({"self-check"}).out, HasSubstr(help + " is as it was built.\n"));
    writeWholeFile(help, "the hElp");
    const Outcome changed = console.run({"self-check"});
    EXPECT_EQ(changed.code, 1);
    EXPECT_THAT(changed.out, HasSubstr(help + " HAS BEEN MODIFIED !\n"));
    EXPECT_EQ(console.run({"self-check", "--json"}).json().at("help"),
              (json{{"path", help}, {"result", "changed"}}));
    console.builtHelp.reset();
    EXPECT_FALSE(console.done({"self-check", "--json"}).json().contains("help"));
}

TEST_F(SelfDefence, ComparesTheFolderWithTheStateThatWasAccepted) {
    EXPECT_EQ(code({"guard", "show"}), 3) << "no installation";
    console.begin();
    console.run({"guard", "show"});
    EXPECT_FALSE(fs::exists(console.home("Permissions")));
    const Outcome unknown = console.run({"guard", "check"});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_THAT(unknown.err, HasSubstr("No state of the folder is stored yet."));
    const json accepted = console.run({"guard", "show", "--accept", "--json"}).json();
    EXPECT_TRUE(accepted.at("accepted"));
    EXPECT_FALSE(accepted.at("entries").at(0).at("columns").empty());
    EXPECT_THAT(console.done({"guard", "check"}).err, Not(HasSubstr("--accept")));
    const json same = console.done({"guard", "check", "--json"}).json();
    EXPECT_EQ(same.at("result"), "same");
    EXPECT_EQ(same.at("before").size(), same.at("now").size());
    flipByte(console.home("Permissions"));
    const Outcome damaged = console.run({"guard", "check"});
    EXPECT_EQ(damaged.code, 1);
    EXPECT_THAT(damaged.err, HasSubstr("The stored state of the folder is damaged"));
    EXPECT_TRUE(console.leftovers().empty());
}

}  // namespace
}  // namespace corvalence::test
