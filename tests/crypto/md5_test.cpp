#include "crypto/md5.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include "base/hex_text.h"

namespace corvalence::crypto {
namespace {

std::string hexOfText(std::string_view text) {
    return base::hexText(Md5::of(base::bytesOf(text)));
}

/// a, b, ... z, a, b, ...
std::string alphabet(std::size_t length) {
    std::string text(length, 'a');
    for (std::size_t i = 0; i < length; ++i)
        text[i] = static_cast<char>('a' + i % 26);
    return text;
}

TEST(Md5, AgreesWithTheTestSuiteOfItsStandard) {
    EXPECT_EQ(hexOfText(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(hexOfText("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(hexOfText("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(hexOfText("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(hexOfText("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(hexOfText("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

// The digest of the joined digest texts of 0, 1, ... 300 counting bytes; its value comes from a separate
// implementation.
TEST(Md5, PadsEveryLength) {
    std::string counting;
    std::string digests;
    for (int length = 0; length <= 300; ++length) {
        digests += hexOfText(counting);
        counting.push_back(static_cast<char>(length % 251));
    }
    EXPECT_EQ(hexOfText(digests), "9417a867c6efe96e57a9ca18e4553ace");
}

// A first digest and, fed back into the same context, a second one. The values come from a separate
// implementation that sets the chaining words to the first digest, puts length mod 64 zeros before it, and
// counts length + 16 bytes.
struct Continuation {
    std::size_t length;
    const char* first;
    const char* second;
};

constexpr Continuation kContinuations[] = {
    {0, "d41d8cd98f00b204e9800998ecf8427e", "30e9bc82a0f4e8262c00ae2243ed9685"},
    {1, "0cc175b9c0f1b6a831c399e269772661", "5ff1e666106ff89a1558aa952e264fb1"},
    {47, "d2b03288300ed8d973ccf805fc8fc4d0", "c4a5d0076fb0924bce3607adf769b408"},
    {48, "abf1bf1ce6f010cf7174f0791b96a8e6", "f7fcd030ede2940bcaac6c90d92a1193"},
    {55, "0d7ae056b2f015cd7dc67494efd658f1", "76d8d7df4f6397a072c701d2010658c4"},
    {56, "31fcfb5165169eb55898e7e4cf34d19a", "f80bfc088acb61a237a70b9a77d83011"},
    {63, "1b30c0670c15e7da3c2ba7bce77ebe99", "c06bfb5f23369b2063076f6939a6a28d"},
    {64, "a2eaf6295c32adc403865fd96a2f182b", "5a5a53e8b7d39e0f6a9a33515652f876"},
    {100, "c850e15189ee11cd8535000b8d8fd6de", "2a6e72490f5f12a9cd9930624bb86461"},
    {128, "3e8c1ccbd71838ef3df4b72e57fb9bf6", "55b7830968771b6f2b29a1a72b604731"},
};

TEST(Md5, ContinuesAfterAFinishFromItsChainingWordsAndCount) {
    for (const Continuation& expected : kContinuations) {
        SCOPED_TRACE(expected.length);
        const std::string text = alphabet(expected.length);
        Md5 md5;
        md5.update(base::bytesOf(text));
        const Md5::Digest first = md5.finish();
        EXPECT_EQ(base::hexText(first), expected.first);
        // One byte at a time: the pieces must not matter here either.
        for (const std::uint8_t& byte : first)
            md5.update({&byte, 1});
        EXPECT_EQ(base::hexText(md5.finish()), expected.second);

        md5.init();
        EXPECT_EQ(base::hexText(md5.finish()), kContinuations[0].first);
    }
}

TEST(Md5, WipeLeavesNoByteOfWhatWasFed) {
    static_assert(std::is_trivially_copyable_v<Md5>);
    Md5 md5;
    md5.update(base::bytesOf(alphabet(100)));
    md5.wipe();
    std::array<std::uint8_t, sizeof(Md5)> memory;
    std::memcpy(memory.data(), &md5, sizeof md5);
    EXPECT_EQ(std::count(memory.begin(), memory.end(), 0), static_cast<std::ptrdiff_t>(memory.size()));
}

}  // namespace
}  // namespace corvalence::crypto
