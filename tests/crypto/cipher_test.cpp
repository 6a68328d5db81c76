#include "crypto/cipher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "base/hex_text.h"

namespace corvalence::crypto {
namespace {

using Code = CipherContext::Code;
using Bytes = std::vector<std::uint8_t>;

Bytes bytesFromHex(std::string_view hex) {
    Bytes bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

/// The bytes 0, 1, 2, ...
Bytes counting(std::size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

/// Every test runs with the portable code and with the processor's instructions, where it has them.
class Cipher : public testing::TestWithParam<Code> {
  protected:
    void SetUp() override {
        if (GetParam() == Code::Accelerated && !CipherContext::isAcceleratedAvailable()) GTEST_SKIP();
    }
};

INSTANTIATE_TEST_SUITE_P(Codes, Cipher, testing::Values(Code::Portable, Code::Accelerated));

TEST_P(Cipher, AgreesWithTheExamplesOfItsStandard) {
    constexpr const char* kSealed[] = {"69c4e0d86a7b0430d8cdb78070b4c55a", "dda97ca4864cdfe06eaf70a0ec0d7191",
                                       "8ea2b7ca516745bfeafc49904b496089"};
    const Bytes plain = bytesFromHex("00112233445566778899aabbccddeeff");
    for (int keyLength = 0; keyLength < 3; ++keyLength) {
        const Bytes key = counting(16 + 8 * static_cast<std::size_t>(keyLength));
        CipherContext cipher(GetParam());
        Bytes block = plain;
        cipher.init(0, CipherContext::Encrypt, key.data(), keyLength);
        ASSERT_EQ(cipher.encryptBlock(block.data(), block.data()), CipherContext::kOk);
        EXPECT_EQ(base::hexText(block), kSealed[keyLength]);
        cipher.init(0, CipherContext::Decrypt, key.data(), keyLength);
        ASSERT_EQ(cipher.decryptBlock(block.data(), block.data()), CipherContext::kOk);
        EXPECT_EQ(block, plain) << keyLength;
    }
}

// NIST SP 800-38A, F.2.5 and F.2.6.
TEST_P(Cipher, ChainsAsThePublishedExample) {
    const Bytes key = bytesFromHex("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4");
    const Bytes plain = bytesFromHex(
        "6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"
        "30c81c46a35ce411e5fbc1191a0a52eff69f2445df4f9b17ad2b417be66c3710");
    const Bytes sealed = bytesFromHex(
        "f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"
        "39f23369a9d9bacfa530e26304231461b2eb05e2c39be9fcda6c19078c6a9d1b");
    for (const int direction : {CipherContext::Encrypt, CipherContext::Decrypt}) {
        const bool sealing = direction == CipherContext::Encrypt;
        CipherContext cipher(GetParam());
        CipherContext::Block chain;
        std::iota(chain.begin(), chain.end(), std::uint8_t{0});
        Bytes bytes = sealing ? plain : sealed;
        cipher.init(0, direction, key.data(), CipherContext::Bits256);
        ASSERT_EQ(sealing ? cipher.encryptChained(bytes.data(), bytes.data(), 4, chain)
                          : cipher.decryptChained(bytes.data(), bytes.data(), 4, chain),
                  CipherContext::kOk);
        EXPECT_EQ(bytes, sealing ? sealed : plain);
        EXPECT_TRUE(std::equal(chain.begin(), chain.end(), sealed.end() - 16));
    }
}

// Several blocks are decrypted at a time; each count, in place and cut in two anywhere, must come out as one
// by one.
TEST_P(Cipher, ChainsAnyNumberOfBlocksInPlaceAndInPieces) {
    const Bytes key = counting(32);
    CipherContext encryption(GetParam());
    CipherContext decryption(GetParam());
    encryption.init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
    decryption.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    Bytes oneByOne;
    CipherContext::Block link{};
    for (std::size_t count = 0; count <= 35; ++count) {
        const Bytes plain = counting(16 * count);
        for (std::size_t cut = 0; cut <= count; cut += 5) {
            SCOPED_TRACE(testing::Message() << cut << " of " << count << " blocks first");
            Bytes bytes = plain;
            CipherContext::Block chain{};
            encryption.encryptChained(bytes.data(), bytes.data(), cut, chain);
            encryption.encryptChained(bytes.data() + 16 * cut, bytes.data() + 16 * cut, count - cut, chain);
            EXPECT_EQ(bytes, oneByOne);
            chain = {};
            decryption.decryptChained(bytes.data(), bytes.data(), cut, chain);
            decryption.decryptChained(bytes.data() + 16 * cut, bytes.data() + 16 * cut, count - cut, chain);
            EXPECT_EQ(bytes, plain);
        }
        for (std::size_t k = 0; k < 16; ++k)
            link[k] ^= static_cast<std::uint8_t>(16 * count + k);
        encryption.encryptBlock(link.data(), link.data());
        oneByOne.insert(oneByOne.end(), link.begin(), link.end());
    }
}

TEST(CipherInit, SetsOneDirectionAndSaysWhatItDoesNotSupport) {
    const Bytes key = counting(32);
    CipherContext cipher;
    CipherContext::Block block{};
    const auto expectCodes = [&](int encrypting, int decrypting) {
        EXPECT_EQ(cipher.encryptChained(block.data(), block.data(), 1, block), encrypting);
        EXPECT_EQ(cipher.decryptChained(block.data(), block.data(), 1, block), decrypting);
    };
    expectCodes(CipherContext::kNotInitialised, CipherContext::kNotInitialised);
    struct Refusal {
        int mode, direction, keyLength;
        const std::uint8_t* key;
        int code;
    };
    const Refusal kRefusals[] = {{1, CipherContext::Encrypt, CipherContext::Bits256, key.data(), -1},
                                 {0, 2, CipherContext::Bits256, key.data(), -2},
                                 {0, CipherContext::Encrypt, 3, key.data(), -3},
                                 {0, CipherContext::Encrypt, -1, key.data(), -3},
                                 {0, CipherContext::Decrypt, CipherContext::Bits128, nullptr, -4}};
    for (const Refusal& refusal : kRefusals) {
        SCOPED_TRACE(refusal.code);
        // A good key first: a refused init must not leave the context working with it.
        cipher.init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
        expectCodes(CipherContext::kOk, CipherContext::kWrongDirection);
        EXPECT_EQ(cipher.init(refusal.mode, refusal.direction, refusal.key, refusal.keyLength), refusal.code);
        expectCodes(CipherContext::kNotInitialised, CipherContext::kNotInitialised);
    }
    cipher.init(0, CipherContext::Decrypt, key.data(), CipherContext::Bits256);
    expectCodes(CipherContext::kWrongDirection, CipherContext::kOk);
}

TEST(CipherContext, LeavesNothingOfItsKeyBehind) {
    const Bytes key(32, 0xA5);
    alignas(CipherContext) std::array<std::uint8_t, sizeof(CipherContext)> memory{};
    auto* cipher = new (memory.data()) CipherContext;
    cipher->init(0, CipherContext::Encrypt, key.data(), CipherContext::Bits256);
    const auto keyBytes = [&] { return std::search_n(memory.begin(), memory.end(), 16, 0xA5); };
    EXPECT_NE(keyBytes(), memory.end());
    cipher->~CipherContext();
    EXPECT_EQ(keyBytes(), memory.end());
}

}  // namespace
}  // namespace corvalence::crypto
