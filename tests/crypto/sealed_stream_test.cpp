#include "crypto/sealed_stream.h"

#include <gtest/gtest.h>

#include <random>

#include "base/hex_text.h"
#include "crypto/sealed_file.h"
#include "memory_file.h"

namespace corvalence::test {
namespace {

using crypto::ChainValue;
using crypto::EndRule;

std::vector<std::uint8_t> randomBytes(std::size_t size) {
    std::mt19937 generator(static_cast<unsigned>(size) + 1);
    std::vector<std::uint8_t> bytes(size);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(generator());
    return bytes;
}

/// The format written down once more, a block at a time: the work block is never cleared between two blocks.
std::vector<std::uint8_t> sealedByTheBook(base::ByteView plain, const crypto::SessionKey& key,
                                          ChainValue chain) {
    crypto::CipherContext cipher(crypto::CipherContext::Code::Portable);
    cipher.init(0, crypto::CipherContext::Encrypt, key.data(), crypto::CipherContext::Bits256);
    std::vector<std::uint8_t> sealed;
    ChainValue work{};
    while (!plain.empty()) {
        const std::size_t count = std::min<std::size_t>(plain.size(), 16);
        for (std::size_t i = 0; i < count; ++i)
            work[i] = static_cast<std::uint8_t>(plain[i] ^ chain[i]);
        ChainValue out{};
        cipher.encryptBlock(work.data(), out.data());
        sealed.insert(sealed.end(), out.begin(), out.end());
        std::copy_n(out.begin(), count, chain.begin());
        plain = plain.subspan(count);
    }
    return sealed;
}

std::vector<std::uint8_t> unsealed(const std::vector<std::uint8_t>& sealed, const crypto::SessionKey& key,
                                   const ChainValue& chain, EndRule rule, std::size_t piece = 100000) {
    MemoryFile file;
    file.bytes = sealed;
    crypto::UnsealReader reader(file, sealed.size(), key, chain, rule);
    std::vector<std::uint8_t> plain;
    std::vector<std::uint8_t> block(piece);
    while (const std::size_t count = reader.read(block))
        plain.insert(plain.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
    return plain;
}

class SealedLength : public testing::TestWithParam<std::size_t> {};

TEST_P(SealedLength, SealsByTheBookHoweverItIsWrittenAndComesBackExactly) {
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::PathIV("/some/path");
    const auto plain = randomBytes(GetParam());
    const auto expected = sealedByTheBook(plain, key, chain);
    EXPECT_EQ(expected.size(), (plain.size() + 15) / 16 * 16);
    for (const std::size_t piece :
         {std::size_t{1}, std::size_t{7}, std::size_t{16}, std::size_t{4097}, plain.size() + 1}) {
        if (piece < 16 && plain.size() > 1000) continue;
        MemoryFile file;
        crypto::Md5 md5;
        crypto::SealWriter writer(file, key, chain, &md5);
        // Twice over one writer: the second sealing knows nothing of the first.
        for (int round = 0; round < 2; ++round) {
            for (std::size_t at = 0; at < plain.size(); at += piece) {
                writer.write(base::ByteView(plain).subspan(at, std::min(piece, plain.size() - at)));
            }
            EXPECT_EQ(writer.finish(), expected.size());
        }
        auto twice = expected;
        twice.insert(twice.end(), expected.begin(), expected.end());
        ASSERT_TRUE(file.bytes == twice) << "written in pieces of " << piece;
        EXPECT_EQ(md5.finish(), crypto::Md5::of(twice));
    }
    EXPECT_TRUE(unsealed(expected, key, chain, EndRule::exactLength(plain.size())) == plain);
    EXPECT_TRUE(unsealed(expected, key, chain, EndRule::exactLength(plain.size()), 13) == plain);
}

INSTANTIATE_TEST_SUITE_P(SealedStream, SealedLength,
                         testing::Values(0, 1, 15, 16, 17, 31, 32, 33, 262143, 262144, 262145, 262144 + 16,
                                         600000));

/// Seals whole blocks so that the last one, unsealed, is exactly `lastBlock`.
std::vector<std::uint8_t> endingIn(std::string_view lastBlock, std::size_t blocksBefore,
                                   const crypto::SessionKey& key, const ChainValue& chain) {
    std::string text(blocksBefore * 16, 'p');
    text += lastBlock;
    return sealedByTheBook(base::bytesOf(text), key, chain);
}

struct Tail {
    std::string lastBlock;
    std::string textTail;   // what the general rule keeps
    std::string shortTail;  // what the short rule keeps
};

class EndOfText : public testing::TestWithParam<Tail> {};

TEST_P(EndOfText, IsFoundInTheLastBlockByItsRule) {
    ASSERT_EQ(GetParam().lastBlock.size(), 16U);
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::PathIV("/some/path");
    const auto sealed = endingIn(GetParam().lastBlock, 2, key, chain);
    const std::string before(32, 'p');
    EXPECT_EQ(base::textOf(unsealed(sealed, key, chain, EndRule::textTail())), before + GetParam().textTail);
    EXPECT_EQ(base::textOf(unsealed(sealed, key, chain, EndRule::shortTail())),
              before + GetParam().shortTail);
}

INSTANTIATE_TEST_SUITE_P(
    SealedStream, EndOfText,
    testing::Values(Tail{"no line feed her", "no line feed her", "no line feed her"},
                    Tail{"end\r\nstale bytes", "end\r\n", "end\r"},
                    Tail{"one\r\ntwo\r\nstale.", "one\r\ntwo\r\n", "one\r"},
                    Tail{"\nstale bytes her", "\n", ""}, Tail{"a\nb\nbare feeds..", "a\n", "a"},
                    Tail{"a\nb\r\nmixed feed.", "a\nb\r\n", "a"},
                    Tail{"fourteen chars\r\n", "fourteen chars\r\n", "fourteen chars\r"}));

TEST(SealedStream, EndsASingleBlockAtTheFirstZeroOfItsDecipheredBytes) {
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::PathIV("/some/path");
    std::string text = "sixteen bytes .";
    text.push_back('!');
    // A plain byte equal to its chain byte is a zero in the block as it is deciphered.
    text[5] = static_cast<char>(chain[5]);
    const auto sealed = sealedByTheBook(base::bytesOf(text), key, chain);
    EXPECT_EQ(base::textOf(unsealed(sealed, key, chain, EndRule::shortTail())), text.substr(0, 5));
    EXPECT_EQ(base::textOf(unsealed(sealed, key, chain, EndRule::textTail())), text);
    EXPECT_EQ(base::textOf(unsealed(sealed, key, chain, EndRule::exactLength(16))), text);
}

TEST(SealedStream, RefusesWhatIsNoRunOfWholeBlocks) {
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::PathIV("/some/path");
    const auto sealed = sealedByTheBook(randomBytes(48), key, chain);
    for (const std::size_t cut : {1U, 15U, 17U, 47U}) {
        std::vector<std::uint8_t> part(sealed.begin(), sealed.begin() + static_cast<std::ptrdiff_t>(cut));
        EXPECT_THROW(unsealed(part, key, chain, EndRule::textTail()), base::FileFailure);
    }
    for (const std::uint64_t length : {0U, 32U, 49U}) {
        EXPECT_THROW(unsealed(sealed, key, chain, EndRule::exactLength(length)), base::FileFailure) << length;
    }
    // A file that ends before its directory entry says is a failure, not an end.
    MemoryFile shorter;
    shorter.bytes.assign(sealed.begin(), sealed.begin() + 32);
    crypto::UnsealReader reader(shorter, 48, key, chain, EndRule::textTail());
    std::vector<std::uint8_t> block(100);
    EXPECT_THROW(reader.read(block), base::FileFailure);
}

TEST(ChainValues, AreMadeOfTheDigestsThatTheFormatNames) {
    // printf '%s' TEXT | md5sum
    const crypto::ChainValues chains;
    EXPECT_EQ(base::hexText(chains.IndexIV), "15be63eef587375415be63eef5873754");
    EXPECT_EQ(base::hexText(chains.ScheduleIV), "3e469f3254c0e0ce3e469f3254c0e0ce");
    EXPECT_EQ(base::hexText(chains.LogIV), "e0d50d706a7e4202e0d50d706a7e4202");
    EXPECT_EQ(base::textOf(chains.RecentIV), "e196da33e196da33");
    EXPECT_EQ(base::textOf(crypto::PathIV("/var/lib/x.db")), "6361ac016361ac01");
    EXPECT_EQ(base::hexText(crypto::BackupIV("/b/Backup Index 1")), "8a6ace56129562198a6ace5612956219");
    EXPECT_NE(crypto::PathIV("/a//b"), crypto::PathIV("/a/b"));
}

TEST(SealedString, ComesBackUnlessItsCipherTextHoldsTheStandIn) {
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::ChainValues().RecentIV;
    int exact = 0;
    for (int i = 0; i < 200; ++i) {
        std::string text =
            "/data/" + std::string(static_cast<std::size_t>(i % 60), 'x') + std::to_string(i) + "\n";
        const std::string sealed = crypto::sealString(text, key, chain);
        EXPECT_EQ(sealed.size() % 16, 0U);
        EXPECT_EQ(sealed.find('\0'), std::string::npos);
        text.pop_back();
        exact += crypto::unsealString(sealed, key, chain) == text ? 1 : 0;
    }
    // One cipher byte in 256 is the stand-in by chance: some come back wrong, most do not.
    EXPECT_GT(exact, 120);
    EXPECT_LT(exact, 200);
}

}  // namespace
}  // namespace corvalence::test
