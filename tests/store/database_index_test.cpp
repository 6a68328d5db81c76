#include "store/database_index.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "crypto/sealed_file.h"
#include "stale_tail.h"
#include "world.h"

namespace corvalence::test {
namespace {

using store::IndexRecord;
using store::PasswordProof;

const std::string kDigest = "0123456789abcdef0123456789abcdef";

IndexRecord record(const std::string& path) {
    IndexRecord record;
    record.path = path;
    record.digest = crypto::DigestCode::Sha1;
    record.number = 7;
    record.created = base::FileTime::fromHalves(29000000, -1);
    record.fileDigest = kDigest;
    return record;
}

std::string plainIndex(World& world) {
    const auto& session = world.vault().session;
    return std::string(crypto::unsealText(world.machine.files, store::DatabaseIndex(world.vault()).path(),
                                          session.key, session.chains.IndexIV, crypto::kUnsealIndexList)
                           .view());
}

TEST(IndexRecord, IsTheLineOfTheFormatWithABareLineFeed) {
    IndexRecord numbered = record("/db/one");
    EXPECT_EQ(numbered.render(),
              "/db/one*1\x7F"
              "7\x7F"
              "29000000\x7F-1\x7F" +
                  kDigest + "\x7F\n");
    numbered.lastCheck = base::FileTime::fromHalves(5, -6);
    EXPECT_EQ(numbered.render(),
              "/db/one*1\x7F"
              "7\x7F"
              "29000000\x7F-1\x7F" +
                  kDigest +
                  "\x7F"
                  "5\x7F-6\x7F\n");
    IndexRecord registry = record("/db/two");
    registry.kind = store::DatabaseKind::Registry;
    EXPECT_EQ(registry.render(),
              "/db/two\x7FR\x7F"
              "29000000\x7F-1\x7F" +
                  kDigest + "\x7F\n");
    for (const IndexRecord& each : {numbered, registry}) {
        EXPECT_EQ(IndexRecord::parse(each.render()).value().render(), each.render());
    }
    EXPECT_FALSE(
        IndexRecord::parse("/db/one\x7F"
                           "7\x7F"
                           "1\x7F"
                           "1\x7F" +
                           kDigest + "\x7F\n"));
    EXPECT_FALSE(
        IndexRecord::parse("/db/one*9\x7F"
                           "7\x7F"
                           "1\x7F"
                           "1\x7F" +
                           kDigest + "\x7F\n"));
}

TEST(DatabaseIndex, ChangesOneFieldAndLeavesTheOtherLinesAlone) {
    World world;
    store::DatabaseIndex index(world.vault());
    index.appendRecord(record("/db/a"));
    index.appendRecord(record("/db/b"));
    const std::string newDigest(32, 'f');
    index.updateDigest("/db/b", newDigest);
    EXPECT_EQ(index.findRecord("/db/b")->fileDigest, newDigest);
    EXPECT_FALSE(index.findRecord("/db/b")->lastCheck);
    index.stampChecked("/db/a", base::FileTime::fromHalves(1, 2));
    index.stampChecked("/db/a", base::FileTime::fromHalves(3, -4));
    index.updateDigest("/db/a", newDigest);
    EXPECT_EQ(plainIndex(world),
              "/db/a*1\x7F"
              "7\x7F"
              "29000000\x7F-1\x7F" +
                  newDigest +
                  "\x7F"
                  "3\x7F-4\x7F\n" +
                  "/db/b*1\x7F"
                  "7\x7F"
                  "29000000\x7F-1\x7F" +
                  newDigest + "\x7F\n");
    index.updateDigest("/db/unknown", kDigest);
    index.removeRecord("/db/a");
    EXPECT_EQ(index.records().size(), 1U);
    EXPECT_FALSE(index.findRecord("/db/a"));
}

TEST(DatabaseIndex, TakesTheFirstLineThatBeginsWithThePath) {
    World world;
    store::DatabaseIndex index(world.vault());
    index.appendRecord(record("/db/a2"));
    index.appendRecord(record("/db/a"));
    EXPECT_EQ(index.findRecord("/db/a")->path, "/db/a2");
    EXPECT_EQ(index.findExact("/db/a")->path, "/db/a");
    world.platform.paths.ignoresCase = false;
    EXPECT_FALSE(index.findRecord("/DB/A"));
    world.platform.paths.ignoresCase = true;
    EXPECT_EQ(index.findRecord("/DB/A")->path, "/db/a2");
    EXPECT_EQ(index.findExact("/DB/A")->path, "/db/a");
    index.removeRecord("/DB/A");
    EXPECT_EQ(index.records().at(0).path, "/db/a");
    EXPECT_EQ(index.records().size(), 1U);
}

TEST(DatabaseIndex, ProvesThePasswordByItsLinesAlone) {
    World world;
    const std::string path = store::DatabaseIndex(world.vault()).path();
    EXPECT_EQ(store::DatabaseIndex(world.vault()).provePassword(), PasswordProof::Proved);
    world.create();
    EXPECT_TRUE(world.password.wasChoosing);
    world.password.password = "another";
    EXPECT_EQ(world.start(), core::StartResult::PasswordRefused);
    EXPECT_FALSE(world.password.wasChoosing);
    world.password.password = "open sesame";
    EXPECT_EQ(world.start(), core::StartResult::Ready);
    // Nothing but a file of 0 bytes is an empty index.
    world.stop();
    std::filesystem::remove(path);
    EXPECT_EQ(world.start(), core::StartResult::PasswordRefused);
    EXPECT_NE(world.machine.ui.transcript().find("Support reference code: DBI"), std::string::npos);
    writeWholeFile(path, "damaged");
    EXPECT_EQ(world.start(), core::StartResult::PasswordRefused);
    EXPECT_NE(world.machine.ui.transcript().find("no password opens it"), std::string::npos);
    EXPECT_EQ(readWholeFile(path), "damaged");
    writeWholeFile(path, std::string(160, 'x'));
    EXPECT_EQ(world.start(), core::StartResult::PasswordRefused);
    writeWholeFile(path, "");
    world.password.password = "anything";
    EXPECT_EQ(world.start(), core::StartResult::Ready);
}

struct Line {
    std::string text;
    bool proves;
};

class ProofLine : public testing::TestWithParam<Line> {};

TEST_P(ProofLine, IsJudged) {
    EXPECT_EQ(store::provesPassword(GetParam().text), GetParam().proves);
}

INSTANTIATE_TEST_SUITE_P(DatabaseIndex, ProofLine,
                         testing::Values(Line{record("/db").render(), true},
                                         Line{"/db\x7F"
                                              "1\x7F\x7F\x7F" +
                                                  kDigest + "\x7F",
                                              true},
                                         Line{"\x7F"
                                              "1\x7F"
                                              "2\x7F"
                                              "3\x7F" +
                                                  kDigest + "\x7F\n",
                                              false},
                                         Line{"/db\x7F"
                                              "1\x7F"
                                              "2\x7F"
                                              "3\x7F" +
                                                  kDigest,
                                              false},
                                         Line{"/db\x7F"
                                              "1\x7F"
                                              "2\x7F"
                                              "3\x7F" +
                                                  kDigest.substr(1) + "\x7F\n",
                                              false},
                                         Line{"/db\x7F"
                                              "1\x7F"
                                              "2\x7F"
                                              "3\x7F" +
                                                  kDigest.substr(1) + "g\x7F\n",
                                              false},
                                         Line{"", false}));

// A short last block may hold a line feed in what the block before it left behind.
TEST(DatabaseIndex, PassesOverWhatTheLastSealedBlockLeftBehind) {
    World world;
    store::DatabaseIndex index(world.vault());
    const auto& session = world.vault().session;
    const std::string text = textWithStaleTail(session.key, session.chains.IndexIV, [](int number) {
        std::string path = "/db/" + std::to_string(number);
        return record(path + std::string(paddingToOneByte(record(path).render().size()), 'x')).render();
    });
    crypto::sealFile(world.vault().working, text, index.path(), session.key, session.chains.IndexIV);
    ASSERT_GT(plainIndex(world).size(), text.size());
    EXPECT_EQ(index.provePassword(), PasswordProof::Proved);
    index.appendRecord(record("/other"));
    EXPECT_EQ(index.records().size(), 2U);
    EXPECT_EQ(plainIndex(world).substr(0, index.records()[0].render().size()), index.records()[0].render());
}

}  // namespace
}  // namespace corvalence::test
