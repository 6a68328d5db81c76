#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/console_text.h"
#include "console.h"

namespace corvalence::test {
namespace {

using nlohmann::json;

std::vector<std::string> members(const json& object) {
    std::vector<std::string> names;
    for (const auto& member : object.items())
        names.push_back(member.key());
    return names;
}

constexpr const char* kDigestOfOne = "6b86b273ff34fce19d6b804eff5a3f5747ada4eaa22f1d49c01e52ddb7875b4b";

TEST(Json, ofACheckHoldsThenAndNow) {
    Console console;
    console.write("a", "1");
    console.write("b", "1");
    console.write("c", "1");
    console.begin();
    const json before = console.done({"files", "db", "--json"}).json();
    console.write("a", "changed");
    std::filesystem::last_write_time(console.path("a"), std::filesystem::file_time_type::clock::now());
    std::filesystem::remove(console.path("b"));

    const Outcome outcome = console.run({"check", "db", "--json"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.err, "");
    json check = outcome.json();
    json& changed = check.at("files")[0];
    EXPECT_EQ(members(changed.at("now")),
              (std::vector<std::string>{"attributes", "created", "digest", "modified", "size"}));
    EXPECT_EQ(changed.at("now").at("size"), 7);
    EXPECT_NE(changed.at("now").at("modified"), changed.at("then").at("modified"));
    changed.erase("now");
    json then = before.at("files")[0];
    EXPECT_EQ(then.at("digest"), kDigestOfOne);
    then.erase("path");
    EXPECT_EQ(
        check,
        (json{{"database", console.home("Databases/db")},
              {"kind", "file-contents"},
              {"listed", 3},
              {"checked", 2},
              {"unchecked", 1},
              {"changed", 1},
              {"identical", 1},
              {"cancelled", false},
              {"files",
               {{{"path", console.path("a")},
                 {"status", "changed"},
                 {"then", then},
                 {"action", "ignored"},
                 {"message", ""}},
                {{"path", console.path("b")}, {"status", "unchecked"}, {"reason", "FileNotFound."}}}}}));

    const json restored = console.run({"check", "db", "--json", "--on-change", "restore"}).json();
    EXPECT_EQ(restored.at("files")[0].at("action"), "restored");
    EXPECT_EQ(restored.at("files")[0].at("message"),
              console.path("a") + " successfully restored.\nThe changed file was moved to " +
                  console.home("Changed Files/a.CHANGED"));
}

TEST(Json, ofTheOtherCommands) {
    Console console;
    console.write("a", "1");
    EXPECT_EQ(console.done({"init", "--json"}).json(), (json{{"home", console.home()}, {"installed", true}}));
    const std::string path = console.home("Databases/db");
    EXPECT_EQ(console.done({"--json", "create", "file-contents", "db", "--digest", "md5"}).json(),
              (json{{"database", path}, {"kind", "file-contents"}, {"digest", "md5"}, {"number", 1}}));
    const json passedOver = {{"hidden", 0},
                             {"links", 0},
                             {"own_files", 0},
                             {"pseudo_file_systems", 0},
                             {"unreadable", json::array()}};
    EXPECT_EQ(console.done({"add", "db", "a", "--json"}).json(), (json{{"database", path},
                                                                       {"added", 1},
                                                                       {"listed", 0},
                                                                       {"failed", 0},
                                                                       {"passed_over", passedOver},
                                                                       {"cancelled", false},
                                                                       {"kept", true}}));
    console.clock.advance(std::chrono::milliseconds(250));
    json listed = {{"path", path},
                   {"kind", "file-contents"},
                   {"number", 1},
                   {"digest", "md5"},
                   {"created", "2024-02-29T12:30:05Z"},
                   {"last_check", nullptr},
                   {"state", "ok"},
                   {"recent", 1}};
    EXPECT_EQ(console.done({"databases", "--json"}).json(), (json{{"databases", {listed}}}));
    console.done({"check", "db"});
    listed["last_check"] = "2024-02-29T12:30:05.25Z";
    EXPECT_EQ(console.done({"databases", "--json"}).json(), (json{{"databases", {listed}}}));

    json details = console.done({"details", "db", "--json"}).json();
    EXPECT_EQ(details.at("listed"), 1);
    EXPECT_EQ(details.at("total_size"), 1);
    EXPECT_EQ(members(details), (std::vector<std::string>{"created", "database", "digest", "kind",
                                                          "last_check", "listed", "modified", "total_size"}));
    console.write("a", "2");
    EXPECT_EQ(console.done({"restore", "db", "a", "--json", "--changed-file", "delete"}).json(),
              (json{{"database", path},
                    {"path", console.path("a")},
                    {"restored", true},
                    {"message", console.path("a") + " successfully restored."},
                    {"notes", json::array()},
                    {"moved_to", nullptr}}));
    EXPECT_EQ(console.done({"config", "get", "page-size", "--json"}).json(),
              (json{{"key", "Config15"}, {"name", "page-size"}, {"text", "10000"}}));
    EXPECT_EQ(console.done({"config", "list", "--json"}).json().at("keys").size(), 41U);
    EXPECT_EQ(console.run({"delete", "db", "--json"}).json(), (json{{"database", path}, {"deleted", false}}));
    EXPECT_EQ(console.run({"reset", "--json"}).json(), (json{{"reset", false}}));
}

TEST(Json, namesOfAnyBytesStayExact) {
    if (!canBeNamed("\xFF")) GTEST_SKIP() << "names are text here";
    Console console;
    console.write("\xFF\"\\\x01", "1");
    console.begin();
    const json file = console.done({"files", "db", "--json"}).json().at("files")[0];
    EXPECT_EQ(file.at("path"), console.path("\xEF\xBF\xBD\"\\\x01"));
    console.write("\xFF\"\\\x01", "2");
    const json changed = console.run({"check", "db", "--json"}).json().at("files")[0];
    for (const json& entry : {file, changed})
        EXPECT_EQ(entry.at("path_base64"), cli::base64(console.path("\xFF\"\\\x01")));
}

TEST(Json, ofACommandThatFailsHoldsTheError) {
    Console console;
    const auto errorOf = [&](std::vector<std::string> command, int code) {
        command.push_back("--json");
        const Outcome outcome = console.run(command);
        EXPECT_EQ(outcome.code, code) << command[0];
        const json document = outcome.json();
        EXPECT_EQ(members(document), std::vector<std::string>{"error"}) << command[0];
        const std::string message = document.at("error").at("message");
        EXPECT_THAT(outcome.err, testing::HasSubstr(message));
        return message;
    };
    EXPECT_THAT(errorOf({"databases"}, 3), testing::HasSubstr("There is no installation here."));
    console.write("a", "1");
    console.begin();
    EXPECT_THAT(errorOf({"create", "file-contents", "db"}, 4), testing::HasSubstr("already exists."));
    EXPECT_THAT(errorOf({"check", "nodb"}, 2), testing::HasSubstr("is not a valid database."));
    EXPECT_THAT(errorOf({"config", "set", "Config15", "1"}, 2), testing::HasSubstr("a whole number"));
    console.input = "wrong\n";
    EXPECT_EQ(errorOf({"files", "db"}, 3), "refused");
    console.input = "secret\n";
    console.process.cancelAt(2);
    const json cancelled = console.run({"databases", "--json"}).json();
    EXPECT_EQ(cancelled.at("error").at("message"), "Cancelled.");
    EXPECT_TRUE(cancelled.at("error").at("reason").is_null());
}

TEST(Json, aDocumentThatFailsOnItsWayIsWholeAndHoldsTheError) {
    Console console;
    console.write("a", "1");
    console.write("b", "1");
    console.begin();
    console.write("a", "2");
    console.write("b", "2");
    console.faults.clear();
    console.run({"check", "db", "--json", "--on-change", "ignore"});
    const std::uint64_t last = console.faults.operations();
    bool brokeOff = false;
    // The check stamps the index at its end: every operation fails once, the last ones behind the first file.
    for (std::uint64_t at = 1; at <= last; ++at) {
        console.faults.failAt(at);
        const Outcome outcome = console.run({"check", "db", "--json", "--on-change", "ignore"});
        if (outcome.code != 4) continue;
        const json document = outcome.json();
        EXPECT_FALSE(document.contains("listed"));
        EXPECT_EQ(document.at("error").at("reason"), "DiskFull.");
        brokeOff = brokeOff || document.contains("files");
    }
    EXPECT_TRUE(brokeOff);
}

}  // namespace
}  // namespace corvalence::test
