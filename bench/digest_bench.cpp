#include <benchmark/benchmark.h>

#include <vector>

#include "crypto/hash_engine.h"
#include "crypto/md5.h"

namespace {

using corvalence::crypto::HashEngine;
using corvalence::crypto::Md5;

/// Bytes in one update: what a read of a file gives, and the smallest files, where set-up and padding weigh.
void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(64)->Arg(4096)->Arg(1 << 18);
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void md5(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes(static_cast<std::size_t>(state.range(0)), 0x5A);
    for (auto _ : state)
        benchmark::DoNotOptimize(Md5::of(bytes));
    countBytes(state);
}
BENCHMARK(md5)->Apply(sizes);

void sha(benchmark::State& state, HashEngine::SHA_TYPE type, HashEngine::Code code) {
    if (code == HashEngine::Code::Accelerated && !HashEngine::isAcceleratedAvailable(type)) {
        state.SkipWithError("the processor lacks the instructions");
        return;
    }
    const std::vector<std::uint8_t> bytes(static_cast<std::size_t>(state.range(0)), 0x5A);
    HashEngine engine(code);
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.Hash(type, bytes).data());
    countBytes(state);
}
BENCHMARK_CAPTURE(sha, sha1 / portable, HashEngine::SHA1, HashEngine::Code::Portable)->Apply(sizes);
BENCHMARK_CAPTURE(sha, sha1 / accelerated, HashEngine::SHA1, HashEngine::Code::Accelerated)->Apply(sizes);
BENCHMARK_CAPTURE(sha, sha256 / portable, HashEngine::SHA256, HashEngine::Code::Portable)->Apply(sizes);
BENCHMARK_CAPTURE(sha, sha256 / accelerated, HashEngine::SHA256, HashEngine::Code::Accelerated)->Apply(sizes);
BENCHMARK_CAPTURE(sha, sha512 / portable, HashEngine::SHA512, HashEngine::Code::Portable)->Apply(sizes);
BENCHMARK_CAPTURE(sha, sha512 / accelerated, HashEngine::SHA512, HashEngine::Code::Accelerated)->Apply(sizes);

}  // namespace
