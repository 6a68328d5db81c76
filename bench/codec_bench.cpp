#include <benchmark/benchmark.h>

#include <vector>

#include "crypto/sealed_stream.h"
#include "support/memory_file.h"

namespace {

using namespace corvalence;

constexpr std::size_t kPiece = 256 * 1024;

/// First argument: bytes of a file; second: how many files, one behind the other, as a container holds them.
void sizes(benchmark::internal::Benchmark* bench) {
    bench->ArgNames({"bytes", "files"});
    bench->Args({64 << 20, 1})->Args({8 << 10, 1000})->Args({1000, 1000})->Args({10, 1000});
}

struct Files {
    explicit Files(const benchmark::State& state)
        : size(static_cast<std::size_t>(state.range(0))),
          count(static_cast<std::size_t>(state.range(1))),
          sealedSize((size + 15) / 16 * 16) {}

    void countIn(benchmark::State& state) const {
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size * count));
        state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
    }

    std::size_t size;
    std::size_t count;
    std::size_t sealedSize;
};

/// Seals the files by one writer, each a sealing of its own.
void sealAll(const Files& files, const crypto::Session& session, test::MemoryFile& container) {
    static const std::vector<std::uint8_t> plain(kPiece, 0x5A);
    container.seek(0);
    crypto::SealWriter writer(container, session.key, session.chains.IndexIV);
    for (std::size_t i = 0; i < files.count; ++i) {
        for (std::size_t left = files.size; left > 0;) {
            const std::size_t count = std::min(left, plain.size());
            writer.write(base::ByteView(plain).first(count));
            left -= count;
        }
        writer.finish();
    }
}

void seal(benchmark::State& state) {
    const Files files(state);
    const crypto::Session session("password");
    test::MemoryFile container;
    sealAll(files, session, container);
    for (auto _ : state) {
        sealAll(files, session, container);
        benchmark::DoNotOptimize(container.bytes.data());
    }
    files.countIn(state);
}
BENCHMARK(seal)->Apply(sizes);

void unseal(benchmark::State& state) {
    const Files files(state);
    const crypto::Session session("password");
    test::MemoryFile container;
    sealAll(files, session, container);
    std::vector<std::uint8_t> plain(kPiece);
    for (auto _ : state) {
        container.seek(0);
        for (std::size_t i = 0; i < files.count; ++i) {
            crypto::UnsealReader reader(container, files.sealedSize, session.key, session.chains.IndexIV,
                                        crypto::EndRule::exactLength(files.size));
            while (reader.read(plain) > 0)
                benchmark::DoNotOptimize(plain.data());
        }
    }
    files.countIn(state);
}
BENCHMARK(unseal)->Apply(sizes);

}  // namespace
