#include "files/file_digest.h"

#include "crypto/digester.h"
#include "platform/file_copy.h"

namespace corvalence::files {

FileDigester::FileDigester(crypto::DigestCode code) : code_(code), block_(platform::kBlockSize) {}

std::optional<DigestedFile> FileDigester::digest(platform::File& file, ByteProgress& progress,
                                                 const Sink& sink) {
    DigestedFile result;
    crypto::Digester digester(code_);
    for (;;) {
        if (progress.cancelled()) return std::nullopt;
        const std::size_t count = file.read(block_.bytes());
        const base::ByteView bytes = block_.bytes().first(count);
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
