#include "crypto/hash_engine.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "base/hex_text.h"
#include "crypto/digester.h"

namespace corvalence::crypto {
namespace {

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
    // The digest of the joined digest texts of 0, 1, ... 300 counting bytes, by a separate implementation.
    const char* ofLengths;
};

constexpr Vectors kVectors[] = {
    {HashEngine::SHA1, "a9993e364706816aba3e25717850c26c9cd0d89d", kTwoBlocksOf64,
     "84983e441c3bd26ebaae4aa1f95129e5e54670f1", "34aa973cd4c4daa4f61eeb2bdbad27316534016f",
     "b73223fc7933314a958e3a110b0bf9b0b9ac4518"},
    {HashEngine::SHA224, "23097d223405d8228642a477bda255b32aadbce4bda0b3f7e36c9da7", kTwoBlocksOf64,
     "75388b16512776cc5dba5da1fd890150b0c6455cb4f58b1952522525",
     "20794655980c91d8bbb4c1ea97618a4bf03f42581948b2ee4ee7ad67",
     "4d8d25a0070cf63a09674e7bd5b638755d82650d5f1ac7bdee7695b1"},
    {HashEngine::SHA256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad", kTwoBlocksOf64,
     "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
     "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
     "b80fadb149bc8cb5eeb5c5cb543942b4b72871d6b176e21baa5c60f6198e4122"},
    {HashEngine::SHA384,
     "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed8086072ba1e7cc2358baeca134c825a7",
     kTwoBlocksOf128,
     "09330c33f71147e83d192fc782cd1b4753111b173b3b05d22fa08086e3b0f712fcc7c71a557e2db966c3e9fa91746039",
     "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b07b8b3dc38ecc4ebae97ddd87f3d8985",
     "26389bd0079daf84d3556ed7d0aac03d9bbf9921927e9778f6986912cdb1deb34e55f2ce7393e4914104477d2464a918"},
    {HashEngine::SHA512,
     "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
     "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f",
     kTwoBlocksOf128,
     "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018"
     "501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909",
     "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973eb"
     "de0ff244877ea60a4cb0432ce577c31beb009c5c2c49aa2e4eadb217ad8cc09b",
     "d8a800c38fac6537314ede4ef4c6a80fbd46adf644ede44c1d3e46b9d9df3cd3"
     "ae6b8d71ade39029a57a70f41ed6a986d51492c4664a882dfa767949fb1c35e0"},
};

TEST(HashEngine, AgreesWithThePublishedExamplesWholeAndInPieces) {
    for (const Vectors& vectors : kVectors) {
        for (const auto code : {HashEngine::Code::Portable, HashEngine::Code::Accelerated}) {
            SCOPED_TRACE(vectors.abc);
            HashEngine engine(code);
            EXPECT_EQ(engine.Hash(vectors.type, base::bytesOf("abc")), vectors.abc);
            EXPECT_EQ(engine.Hash(vectors.type, base::bytesOf(vectors.message)), vectors.ofMessage);
            EXPECT_STREQ(engine.hexCString(), vectors.ofMessage);
            EXPECT_EQ(base::hexText(engine.rawDigest()), vectors.ofMessage);
            std::string counting;
            std::string digests;
            for (int length = 0; length <= 300; ++length) {
                digests += engine.Hash(vectors.type, base::bytesOf(counting));
                counting.push_back(static_cast<char>(length % 251));
            }
            EXPECT_EQ(engine.Hash(vectors.type, base::bytesOf(digests)), vectors.ofLengths);
            const std::string million(1'000'000, 'a');
            for (const std::size_t piece : {std::size_t{1}, std::size_t{129}, million.size()}) {
                engine.Init(vectors.type);
                for (std::size_t at = 0; at < million.size(); at += piece)
                    engine.Update(base::bytesOf(std::string_view(million).substr(at, piece)));
                engine.Final();
                EXPECT_EQ(engine.hexText(), vectors.ofMillion) << "in pieces of " << piece;
            }
        }
    }
}

std::string complaintOf(const std::function<void()>& call) {
    try {
        call();
        return "none";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

constexpr const char* kNoType = "Invalid SHA_TYPE type!";

TEST(HashEngine, RefusesTypesThatItDoesNotKnow) {
    for (const int type : {-1, 0, 6}) {
        HashEngine engine;
        EXPECT_EQ(complaintOf([&] { engine.Final(); }), kNoType) << type;
        // A refused Init also puts an end to a digest that was under way.
        engine.Init(HashEngine::SHA256);
        EXPECT_EQ(complaintOf([&] { engine.Init(type); }), kNoType) << type;
        EXPECT_EQ(complaintOf([&] { engine.Update(base::bytesOf("abc")); }), kNoType) << type;
    }
}

TEST(HashEngine, ShowsNoDigestThatIsNotFinishedAndTakesNothingAfterwards) {
    const std::string expected = "Unfinished execution!";
    HashEngine engine;
    EXPECT_EQ(complaintOf([&] { engine.rawDigest(); }), expected);
    for (int round = 0; round < 2; ++round) {
        engine.Init(HashEngine::SHA256);
        engine.Update(base::bytesOf("abc"));
        EXPECT_EQ(complaintOf([&] { engine.hexText(); }), expected);
        EXPECT_EQ(complaintOf([&] { engine.hexCString(); }), expected);
        EXPECT_EQ(complaintOf([&] { engine.rawDigest(); }), expected);
        engine.Final();
        EXPECT_EQ(complaintOf([&] { engine.Update(base::bytesOf("d")); }), kNoType);
        EXPECT_EQ(engine.hexText(), kVectors[2].abc);
    }
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
        digester.update(base::bytesOf("abc"));
        EXPECT_EQ(digester.finish(), digest);
        EXPECT_EQ(digestKind(*code).width, digest.size());
    }
    EXPECT_FALSE(digestCodeOf('4'));
}

}  // namespace
}  // namespace corvalence::crypto
