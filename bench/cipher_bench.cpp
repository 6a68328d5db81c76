#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "crypto/cipher.h"

namespace {

using corvalence::crypto::CipherContext;

bool prepared(benchmark::State& state, CipherContext& cipher, CipherContext::Direction direction,
              CipherContext::Code code) {
    static constexpr std::array<std::uint8_t, 32> kKey = {1, 2, 3};
    if (code == CipherContext::Code::Accelerated && !CipherContext::isAcceleratedAvailable()) {
        state.SkipWithError("the processor lacks the instructions");
        return false;
    }
    return cipher.init(0, direction, kKey.data(), CipherContext::Bits256) == CipherContext::kOk;
}

/// A piece of a large file, chained.
void chained(benchmark::State& state, CipherContext::Direction direction, CipherContext::Code code) {
    CipherContext cipher(code);
    if (!prepared(state, cipher, direction, code)) return;
    std::vector<std::uint8_t> bytes(1 << 18);
    const std::size_t blocks = bytes.size() / CipherContext::kBlockSize;
    CipherContext::Block chain{};
    for (auto _ : state) {
        if (direction == CipherContext::Encrypt) {
            cipher.encryptChained(bytes.data(), bytes.data(), blocks, chain);
        } else {
            cipher.decryptChained(bytes.data(), bytes.data(), blocks, chain);
        }
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

/// A context for one short string: the key schedule and a few blocks.
void shortString(benchmark::State& state, CipherContext::Code code) {
    std::array<std::uint8_t, 64> bytes{};
    for (auto _ : state) {
        CipherContext cipher(code);
        if (!prepared(state, cipher, CipherContext::Decrypt, code)) return;
        CipherContext::Block chain{};
        cipher.decryptChained(bytes.data(), bytes.data(), bytes.size() / CipherContext::kBlockSize, chain);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

using Code = CipherContext::Code;
BENCHMARK_CAPTURE(chained, encrypt / portable, CipherContext::Encrypt, Code::Portable);
BENCHMARK_CAPTURE(chained, encrypt / accelerated, CipherContext::Encrypt, Code::Accelerated);
BENCHMARK_CAPTURE(chained, decrypt / portable, CipherContext::Decrypt, Code::Portable);
BENCHMARK_CAPTURE(chained, decrypt / accelerated, CipherContext::Decrypt, Code::Accelerated);
BENCHMARK_CAPTURE(shortString, portable, Code::Portable);
BENCHMARK_CAPTURE(shortString, accelerated, Code::Accelerated);

}  // namespace
