#include "crypto/hash_engine.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <tuple>

#include "base/hex_text.h"
#include "crypto/digester.h"

namespace corvalence::crypto {
namespace {

using Code = HashEngine::Code;

constexpr std::string_view kTwoBlocksOf64 = "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
constexpr std::string_view kTwoBlocksOf128 =
    "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmn"
    "hijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu";

// The published examples of the standard: "abc", a message of two blocks, a million times "a".
struct Vectors {
    int type;
    const char* abc;
    std::string_view message;
    const char* ofMessage;
    const char* ofMillion;
};

constexpr Vectors kVectors[] = {
    {HashEngine::SHA1, "a9993e364706816aba3e25717850c26c9cd0d89d", kTwoBlocksOf64,
     "84983e441c3bd26ebaae4aa1f95129e5e54670f1", "34aa973cd4c4daa4f61eeb2bdbad27316534016f"},
    {HashEngine::SHA224, "23097d223405d8228642a477bda255b32aadbce4bda0b3f7e36c9da7", kTwoBlocksOf64,
     "75388b16512776cc5dba5da1fd890150b0c6455cb4f58b1952522525",
     "20794655980c91d8bbb4c1ea97618a4bf03f42581948b2ee4ee7ad67"},
    {HashEngine::SHA256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", kTwoBlocksOf64,
     "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
     "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    {HashEngine::SHA384,
     "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed8086072ba1e7cc2358baeca134c825a7",
     kTwoBlocksOf128,
     "09330c33f71147e83d192fc782cd1b4753111b173b3b05d22fa08086e3b0f712fcc7c71a557e2db966c3e9fa91746039",
     "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b07b8b3dc38ecc4ebae97ddd87f3d8985"},
    {HashEngine::SHA512,
     "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
     "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f",
     kTwoBlocksOf128,
     "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018"
     "501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909",
     "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973eb"
     "de0ff244877ea60a4cb0432ce577c31beb009c5c2c49aa2e4eadb217ad8cc09b"},
};

class HashEngineVectors : public testing::TestWithParam<std::tuple<Vectors, Code>> {};

TEST_P(HashEngineVectors, HoldWholeAndInPieces) {
    const auto& [vectors, code] = GetParam();
    if (code == Code::Accelerated && !HashEngine::isAcceleratedAvailable(vectors.type)) {
        GTEST_SKIP() << "the processor lacks the instructions of the accelerated code";
    }
    HashEngine engine(code);
    EXPECT_EQ(engine.Hash(vectors.type, base::bytesOf("abc")), vectors.abc);
    EXPECT_EQ(engine.Hash(vectors.type, base::bytesOf(vectors.message)), vectors.ofMessage);
    EXPECT_STREQ(engine.hexCString(), vectors.ofMessage);
    EXPECT_EQ(base::hexText(engine.rawDigest()), vectors.ofMessage);

    const std::string million(1'000'000, 'a');
    for (const std::size_t piece : {std::size_t{1}, std::size_t{63}, std::size_t{129}, million.size()}) {
        engine.Init(vectors.type);
        for (std::size_t at = 0; at < million.size(); at += piece) {
            engine.Update(base::bytesOf(std::string_view(million).substr(at, piece)));
        }
        engine.Final();
        EXPECT_EQ(engine.hexText(), vectors.ofMillion) << "in pieces of " << piece;
    }
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Vectors, Code>>& info) {
    static constexpr const char* kNames[] = {"", "Sha1", "Sha224", "Sha256", "Sha384", "Sha512"};
    const auto& [vectors, code] = info.param;
    return std::string(kNames[vectors.type]) + (code == Code::Portable ? "Portable" : "Accelerated");
}

INSTANTIATE_TEST_SUITE_P(Published, HashEngineVectors,
                         testing::Combine(testing::ValuesIn(kVectors),
                                          testing::Values(Code::Portable, Code::Accelerated)),
                         nameOf);

std::string complaintOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

TEST(HashEngine, RefusesTypesThatItDoesNotKnow) {
    const std::string expected = "Invalid SHA_TYPE type!";
    for (const int type : {-1, 0, 6}) {
        HashEngine engine;
        EXPECT_EQ(complaintOf([&] { engine.Hash(type, base::bytesOf("abc")); }), expected) << type;
        EXPECT_EQ(complaintOf([&] { engine.Init(type); }), expected) << type;
        EXPECT_EQ(complaintOf([&] { engine.Update(base::bytesOf("abc")); }), expected) << type;
        EXPECT_EQ(complaintOf([&] { engine.Final(); }), expected) << type;
    }
    // A refused Init also puts an end to a digest that was under way.
    HashEngine engine;
    engine.Init(HashEngine::SHA256);
    EXPECT_EQ(complaintOf([&] { engine.Init(6); }), expected);
    EXPECT_EQ(complaintOf([&] { engine.Update(base::bytesOf("abc")); }), expected);
}

TEST(HashEngine, ShowsNoDigestThatIsNotFinished) {
    const std::string expected = "Unfinished execution!";
    HashEngine engine;
    const auto expectHidden = [&] {
        EXPECT_EQ(complaintOf([&] { engine.hexText(); }), expected);
        EXPECT_EQ(complaintOf([&] { engine.hexCString(); }), expected);
        EXPECT_EQ(complaintOf([&] { engine.rawDigest(); }), expected);
    };
    expectHidden();
    engine.Init(HashEngine::SHA1);
    engine.Update(base::bytesOf("abc"));
    expectHidden();
    engine.Final();
    EXPECT_EQ(engine.rawDigest().size(), 20u);
    engine.Init(HashEngine::SHA1);
    expectHidden();
}

TEST(HashEngine, TakesNoBytesBetweenFinalAndTheNextInit) {
    HashEngine engine;
    engine.Hash(HashEngine::SHA256, base::bytesOf("abc"));
    EXPECT_EQ(complaintOf([&] { engine.Update(base::bytesOf("d")); }), "Invalid SHA_TYPE type!");
    EXPECT_EQ(engine.hexText(), kVectors[2].abc);
}

TEST(Digester, DigestsByTheCharacterInTheDatabaseIndex) {
    constexpr std::pair<char, std::string_view> kExpected[] = {{'0', "900150983cd24fb0d6963f7d28e17f72"},
                                                               {'1', kVectors[0].abc},
                                                               {'2', kVectors[2].abc},
                                                               {'3', kVectors[4].abc}};
    for (const auto& [character, digest] : kExpected) {
        const auto code = digestCodeOf(character);
        ASSERT_TRUE(code) << character;
        Digester digester(*code);
        digester.update(base::bytesOf("a"));
        digester.update(base::bytesOf("bc"));
        EXPECT_EQ(digester.finish(), digest);
        EXPECT_EQ(digestKind(*code).width, digest.size());
    }
    EXPECT_FALSE(digestCodeOf('4'));
    EXPECT_FALSE(digestCodeOf('/'));
}

}  // namespace
}  // namespace corvalence::crypto
