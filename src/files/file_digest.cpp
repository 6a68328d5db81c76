#include "files/file_digest.h"

#include "crypto/digester.h"
#include "platform/file_copy.h"

namespace corvalence::files {

FileDigester::FileDigester(platform::FileSystem& files, crypto::DigestCode code)
    : files_(files), code_(code), block_(platform::kBlockSize) {}

std::optional<DigestedFile> FileDigester::digest(const std::string& path, ByteProgress& progress,
                                                 const Sink& sink) {
    const auto file = files_.openShared(path);
    return digest(*file, progress, sink);
}

std::optional<DigestedFile> FileDigester::digest(platform::File& file, ByteProgress& progress,
                                                 const Sink& sink) {
    DigestedFile result;
    result.status = file.status();
    crypto::Digester digester(code_);
    for (;;) {
        if (progress.cancelled()) return std::nullopt;
        const std::size_t count = file.read(block_);
        const base::ByteView bytes = base::ByteView(block_).first(count);
        digester.update(bytes);
        if (sink) sink(bytes);
        result.bytes += count;
        progress.advance(count);
        // A short read happens only at the end, so a small file costs a single one.
        if (count < block_.size()) break;
    }
    result.digest = digester.finish();
    return result;
}

}  // namespace corvalence::files
