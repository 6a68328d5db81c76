#include "crypto/sealed_stream.h"

#include <gtest/gtest.h>

#include <random>

#include "base/hex_text.h"
#include "crypto/random_unsealer.h"
#include "crypto/seal_appender.h"
#include "crypto/sealed_file.h"
#include "memory_file.h"

namespace corvalence::test {
namespace {

using crypto::ChainValue;
using crypto::EndRule;
using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(std::size_t size) {
    std::mt19937 generator(static_cast<unsigned>(size) + 1);
    Bytes bytes(size);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(generator());
    return bytes;
}

/// The format written down once more, a block at a time: the work block is never cleared between two blocks.
Bytes sealedByTheBook(base::ByteView plain, const crypto::SessionKey& key, ChainValue chain) {
    crypto::CipherContext cipher(crypto::CipherContext::Code::Portable);
    cipher.init(0, crypto::CipherContext::Encrypt, key.data(), crypto::CipherContext::Bits256);
    Bytes sealed;
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

class SealedStream : public testing::Test {
  protected:
    Bytes sealed(base::ByteView plain) const { return sealedByTheBook(plain, key_, chain_); }
    Bytes unsealed(const Bytes& bytes, EndRule rule, std::size_t piece = 100000) const {
        MemoryFile file;
        file.bytes = bytes;
        crypto::UnsealReader reader(file, bytes.size(), key_, chain_, rule);
        Bytes plain;
        Bytes block(piece);
        while (const std::size_t count = reader.read(block))
            plain.insert(plain.end(), block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count));
        return plain;
    }
    /// What comes back of a text under a rule.
    std::string kept(const std::string& text, EndRule rule) const {
        const Bytes plain = unsealed(sealed(base::bytesOf(text)), rule);
        return std::string(plain.begin(), plain.end());
    }

    const crypto::SessionKey key_{"a password"};
    const ChainValue chain_ = crypto::PathIV("/some/path");
};

TEST_F(SealedStream, SealsByTheBookHoweverItIsWrittenAndComesBackExactly) {
    for (const std::size_t size :
         {0U, 1U, 15U, 16U, 17U, 32U, 33U, 262143U, 262144U, 262145U, 262160U, 600000U}) {
        const Bytes plain = randomBytes(size);
        const Bytes expected = sealed(plain);
        Bytes twice = expected;
        const Bytes again = sealed(base::ByteView(plain).first(std::min<std::size_t>(size, 1)));
        twice.insert(twice.end(), again.begin(), again.end());
        for (const std::size_t piece : {std::size_t{7}, std::size_t{16}, std::size_t{4097}, size + 1}) {
            SCOPED_TRACE(testing::Message() << size << " bytes in pieces of " << piece);
            MemoryFile file;
            crypto::Md5 md5;
            crypto::SealWriter writer(file, key_, chain_, &md5);
            for (std::size_t at = 0; at < size; at += piece)
                writer.write(base::ByteView(plain).subspan(at, std::min(piece, size - at)));
            EXPECT_EQ(writer.finish(), (size + 15) / 16 * 16);
            // A second sealing, of the first byte, knows nothing of the first.
            writer.write(base::ByteView(plain).first(std::min<std::size_t>(size, 1)));
            EXPECT_EQ(writer.finish(), again.size());
            ASSERT_TRUE(file.bytes == twice);
            EXPECT_EQ(md5.finish(), crypto::Md5::of(twice));
        }
        EXPECT_TRUE(unsealed(expected, EndRule::exactLength(size)) == plain) << size;
        EXPECT_TRUE(unsealed(expected, EndRule::exactLength(size), 13) == plain) << size;
    }
}

/// Lines of every length up to 40, so that texts end at every place of a block.
std::string someLines(std::size_t count) {
    std::string text;
    for (std::size_t line = 0; line < count; ++line)
        text += std::string(line * 7 % 41, static_cast<char>('a' + line % 26)) + "\r\n";
    return text;
}

TEST_F(SealedStream, IsAddedToAsIfAllOfItWereSealedAnew) {
    const auto bytes = [](const std::string& text) { return Bytes(text.begin(), text.end()); };
    for (std::size_t lines = 0; lines < 42; ++lines) {
        for (const std::string& added : {std::string(), std::string("\r\n"), someLines(3), someLines(50)}) {
            const std::string before = someLines(lines);
            MemoryFile file;
            file.bytes = sealed(bytes(before));
            // What an addition that was ended by force leaves behind the last whole block.
            file.bytes.insert(file.bytes.end(), lines % 16, 0x55);
            crypto::SealAppender appender(file, key_, chain_);
            EXPECT_TRUE(appender.isAtLineBegin());
            for (std::size_t at = 0; at < added.size(); at += 37) {
                appender.write(base::bytesOf(std::string_view(added).substr(at, 37)));
                appender.push();
                // An end here leaves all of what was there.
                const Bytes whole(file.bytes.begin(), file.bytes.begin() + static_cast<std::ptrdiff_t>(
                                                                               file.bytes.size() / 16 * 16));
                const Bytes plain = unsealed(whole, EndRule::textTail());
                ASSERT_TRUE(std::string(plain.begin(), plain.end()).starts_with(before));
            }
            appender.finish();
            ASSERT_TRUE(file.bytes == sealed(bytes(before + added))) << lines << " lines and " << added;
        }
    }
    MemoryFile torn;
    torn.bytes = sealed(bytes("sixteen bytes .!"));
    EXPECT_FALSE(crypto::SealAppender(torn, key_, chain_).isAtLineBegin());
}

TEST_F(SealedStream, UnsealsAnyBlocksOfAStretch) {
    const Bytes plain = randomBytes(640);
    MemoryFile file;
    file.bytes = randomBytes(5);  // what stands in front of the stretch
    const Bytes stretch = sealed(plain);
    file.bytes.insert(file.bytes.end(), stretch.begin(), stretch.end());
    crypto::RandomUnsealer reader(file, 5, 640, key_, chain_);
    Bytes block(100);
    // Ahead, directly behind, back, to the first block, beyond the end.
    for (const std::size_t at : {320U, 416U, 512U, 608U, 624U, 16U, 0U, 96U, 0U, 640U, 656U}) {
        const std::size_t size = at < 640 ? std::min<std::size_t>(96, 640 - at) : 0;
        ASSERT_EQ(reader.read(at, block), size) << at;
        EXPECT_TRUE(std::equal(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(size),
                               plain.begin() + static_cast<std::ptrdiff_t>(at)))
            << at;
    }
    file.bytes.resize(640);
    EXPECT_EQ(reader.read(496, block), 96U);
    EXPECT_THROW(reader.read(592, block), base::FileFailure);
    EXPECT_THROW(crypto::RandomUnsealer(file, 0, 639, key_, chain_), base::FileFailure);
}

TEST_F(SealedStream, EndsATextInItsLastBlockByTheRule) {
    struct Tail {
        std::string lastBlock;
        std::string textTail;   // what the general rule keeps
        std::string shortTail;  // what the short rule keeps
    };
    const Tail kTails[] = {{"no line feed her", "no line feed her", "no line feed her"},
                           {"end\r\nstale bytes", "end\r\n", "end\r"},
                           {"one\r\ntwo\r\nstale.", "one\r\ntwo\r\n", "one\r"},
                           {"\nstale bytes her", "\n", ""},
                           {"a\nb\nbare feeds..", "a\n", "a"},
                           {"a\nb\r\nmixed feed.", "a\nb\r\n", "a"},
                           {"fourteen chars\r\n", "fourteen chars\r\n", "fourteen chars\r"}};
    const std::string before(32, 'p');
    for (const Tail& tail : kTails) {
        EXPECT_EQ(kept(before + tail.lastBlock, EndRule::textTail()), before + tail.textTail);
        EXPECT_EQ(kept(before + tail.lastBlock, EndRule::shortTail()), before + tail.shortTail);
    }
}

TEST_F(SealedStream, EndsASingleBlockAtTheFirstZeroOfItsDecipheredBytes) {
    std::string text = "sixteen bytes .!";
    // A plain byte equal to its chain byte is a zero in the block as it is deciphered.
    text[5] = static_cast<char>(chain_[5]);
    EXPECT_EQ(kept(text, EndRule::shortTail()), text.substr(0, 5));
    EXPECT_EQ(kept(text, EndRule::textTail()), text);
}

TEST_F(SealedStream, RefusesWhatIsNoRunOfWholeBlocks) {
    const Bytes whole = sealed(randomBytes(48));
    for (const std::ptrdiff_t cut : {1, 15, 17, 47})
        EXPECT_THROW(unsealed({whole.begin(), whole.begin() + cut}, EndRule::textTail()), base::FileFailure);
    for (const std::uint64_t length : {0U, 32U, 49U})
        EXPECT_THROW(unsealed(whole, EndRule::exactLength(length)), base::FileFailure) << length;
    // A file that ends before its directory entry says is a failure, not an end.
    MemoryFile shorter;
    shorter.bytes.assign(whole.begin(), whole.begin() + 32);
    crypto::UnsealReader reader(shorter, 48, key_, chain_, EndRule::textTail());
    Bytes block(100);
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
}

TEST(SealedString, ComesBackUnlessItsCipherTextHoldsTheStandIn) {
    const crypto::SessionKey key("a password");
    const ChainValue chain = crypto::ChainValues().RecentIV;
    int exact = 0;
    for (std::size_t i = 0; i < 200; ++i) {
        const std::string text = "/data/" + std::string(i % 60, 'x') + std::to_string(i);
        const std::string sealed = crypto::sealString(text + "\n", key, chain);
        EXPECT_EQ(sealed.find('\0'), std::string::npos);
        exact += crypto::unsealString(sealed, key, chain) == text ? 1 : 0;
    }
    // One cipher byte in 256 is the stand-in by chance: some come back wrong, most do not.
    EXPECT_GT(exact, 120);
    EXPECT_LT(exact, 200);
}

}  // namespace
}  // namespace corvalence::test
