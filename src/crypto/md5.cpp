#include "crypto/md5.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "crypto/byte_order.h"
#include "crypto/secure_zero.h"

namespace corvalence::crypto {
namespace {

constexpr std::size_t kBlockSize = 64;
constexpr std::size_t kLengthOffset = 56;

constexpr std::array<std::uint32_t, 4> kInitialState = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};

constexpr std::array<std::uint32_t, 64> kAddends = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391};

constexpr std::array<std::array<int, 4>, 4> kRotations = {
    {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};

struct Words {
    std::uint32_t a, b, c, d;
};

/// Which of the block's sixteen words a step adds.
constexpr std::size_t wordOf(std::size_t step) noexcept {
    switch (step / 16) {
        case 0:
            return step;
        case 1:
            return (5 * step + 1) % 16;
        case 2:
            return (3 * step + 5) % 16;
        default:
            return 7 * step % 16;
    }
}

// Everything hangs on the newest word, b. Each round's function is written so that b passes through as few
// operations as possible before the rotation, and what does not depend on b is added beforehand.
template <std::size_t Step>
[[gnu::always_inline]] inline void step(Words& w, const std::uint8_t* block) noexcept {
    std::uint32_t sum =
        w.a + kAddends[Step] + loadWord<std::uint32_t, std::endian::little>(block + 4 * wordOf(Step));
    // An empty instruction that takes the sum as it stands: compilers may not move b's part in front of it.
    __asm__("" : "+r"(sum));
    if constexpr (Step / 16 == 0) {
        sum += ((w.c ^ w.d) & w.b) ^ w.d;
    } else if constexpr (Step / 16 == 1) {
        // The two terms share no bit, so they may be added one after the other instead of being joined first.
        sum += ~w.d & w.c;
        sum += w.d & w.b;
    } else if constexpr (Step / 16 == 2) {
        sum += (w.c ^ w.d) ^ w.b;
    } else {
        sum += (w.b | ~w.d) ^ w.c;
    }
    w = {w.d, w.b + std::rotl(sum, kRotations[Step / 16][Step % 4]), w.b, w.c};
}

template <std::size_t... Steps>
[[gnu::always_inline]] inline void allSteps(Words& w, const std::uint8_t* block,
                                            std::index_sequence<Steps...>) noexcept {
    (step<Steps>(w, block), ...);
}

void compress(std::array<std::uint32_t, 4>& state, const std::uint8_t* blocks, std::size_t count) noexcept {
    Words w{state[0], state[1], state[2], state[3]};
    for (; count > 0; --count, blocks += kBlockSize) {
        const Words before = w;
        allSteps(w, blocks, std::make_index_sequence<64>());
        w = {w.a + before.a, w.b + before.b, w.c + before.c, w.d + before.d};
    }
    state = {w.a, w.b, w.c, w.d};
}

}  // namespace

void Md5::init() noexcept {
    state_ = kInitialState;
    count_ = 0;
    buffer_.fill(0);
}

void Md5::update(base::ByteView bytes) noexcept {
    const std::size_t position = count_ % kBlockSize;
    count_ += bytes.size();
    if (position != 0) {
        const std::size_t taken = std::min(kBlockSize - position, bytes.size());
        std::copy_n(bytes.begin(), taken, buffer_.begin() + static_cast<std::ptrdiff_t>(position));
        if (position + taken < kBlockSize) return;
        compress(state_, buffer_.data(), 1);
        bytes = bytes.subspan(taken);
    }
    compress(state_, bytes.data(), bytes.size() / kBlockSize);
    bytes = bytes.last(bytes.size() % kBlockSize);
    std::copy(bytes.begin(), bytes.end(), buffer_.begin());
}

Md5::Digest Md5::finish() noexcept {
    std::size_t position = count_ % kBlockSize;
    buffer_[position++] = 0x80;
    if (position > kLengthOffset) {
        std::memset(buffer_.data() + position, 0, kBlockSize - position);
        compress(state_, buffer_.data(), 1);
        position = 0;
    }
    std::memset(buffer_.data() + position, 0, kLengthOffset - position);
    storeWord<std::endian::little>(count_ * 8, buffer_.data() + kLengthOffset);
    compress(state_, buffer_.data(), 1);
    buffer_.fill(0);

    Digest digest;
    for (std::size_t i = 0; i < state_.size(); ++i)
        storeWord<std::endian::little>(state_[i], digest.data() + 4 * i);
    return digest;
}

void Md5::wipe() noexcept {
    secureZero(state_.data(), sizeof state_);
    secureZero(&count_, sizeof count_);
    secureZero(buffer_.data(), sizeof buffer_);
}

Md5::Digest Md5::of(base::ByteView bytes) noexcept {
    Md5 md5;
    md5.update(bytes);
    return md5.finish();
}

}  // namespace corvalence::crypto
