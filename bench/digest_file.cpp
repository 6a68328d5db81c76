// digest_file md5|sha1|sha256|sha512 FILE: prints the file's digest, read in pieces as a check reads it.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "base/page_buffer.h"
#include "crypto/digester.h"

namespace {

using namespace corvalence;

constexpr std::size_t kPiece = 1 << 18;

std::optional<crypto::DigestCode> codeNamed(std::string_view name) {
    for (const crypto::DigestKind& kind : crypto::kDigestKinds) {
        if (kind.consoleName == name) return kind.code;
    }
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    const auto code = argc == 3 ? codeNamed(argv[1]) : std::nullopt;
    if (!code) {
        std::fputs("usage: digest_file md5|sha1|sha256|sha512 FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(argv[2], "rb"), std::fclose);
    if (!file) {
        std::perror(argv[2]);
        return EXIT_FAILURE;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    crypto::Digester digester(*code);
    base::PageBuffer piece(kPiece);
    while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), file.get())) {
        digester.update(piece.bytes().first(size));
    }
    if (std::ferror(file.get()) != 0) {
        std::perror(argv[2]);
        return EXIT_FAILURE;
    }
    std::puts(digester.finish().c_str());
    return EXIT_SUCCESS;
}
