// make_corpus FOLDER COUNT [LARGEST [SUFFIX]]: writes COUNT files of 0 to LARGEST bytes (16384 where none is
// given) below FOLDER, a thousand in each sub-folder, named with SUFFIX (".bin" where none is given). Files
// with the suffix ".txt" hold letters as often as texts do, others any bytes. The same arguments give the
// same names, sizes and bytes on every machine.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint64_t kFilesInFolder = 1000;

/// SplitMix64: small, fast, and the same everywhere, which the standard library's distributions are not.
std::uint64_t nextRandom(std::uint64_t& state) {
    std::uint64_t value = state += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}

// What one of 64 bytes of a text is.
constexpr std::string_view kText = "       eeeeettttttaaaaoooiiinnnsssrrrhhhddlluccmmffwyygppbvk\n\nE.";
static_assert(kText.size() == 64);

bool writeFile(const std::filesystem::path& path, std::vector<char>& bytes, std::uint64_t size, bool isText,
               std::uint64_t& random) {
    for (std::uint64_t at = 0; at < size; at += 8) {
        std::uint64_t word = nextRandom(random);
        for (std::uint64_t i = at; i < at + 8 && i < size; ++i, word >>= 8)
            bytes[i] = isText ? kText[word & 63] : static_cast<char>(word & 0xFF);
    }
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(size));
    file.close();
    return !file.fail();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 5) {
        std::fputs("usage: make_corpus FOLDER COUNT [LARGEST [SUFFIX]]\n", stderr);
        return EXIT_FAILURE;
    }
    const std::filesystem::path root = argv[1];
    const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);
    const std::uint64_t largest = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 16384;
    const std::string suffix = argc > 4 ? argv[4] : ".bin";
    std::vector<char> bytes(largest);
    std::uint64_t random = 1;
    std::filesystem::path folder;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (i % kFilesInFolder == 0) {
            folder = root / ("folder" + std::to_string(i / kFilesInFolder));
            std::filesystem::create_directories(folder);
        }
        const std::filesystem::path path = folder / ("file" + std::to_string(i) + suffix);
        if (!writeFile(path, bytes, nextRandom(random) % (largest + 1), suffix == ".txt", random)) {
            std::perror(path.c_str());
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
