#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "crypto/sealed_stream.h"
#include "memory_file.h"

namespace corvalence::test {

/// The first text of `candidate`(0), (1), … whose last sealed block ends, once unsealed, in a line end that
/// the text does not have. About one text in five thousand does, if little more than its line feed stands in
/// the last block.
inline std::string textWithStaleTail(const crypto::SessionKey& key, const crypto::ChainValue& chain,
                                     const std::function<std::string(int)>& candidate) {
    MemoryFile sealed;
    crypto::SealWriter writer(sealed, key, chain);
    for (int number = 0; number < 100000; ++number) {
        const std::string text = candidate(number);
        sealed.seek(0);
        writer.write(base::bytesOf(text));
        const std::uint64_t size = writer.finish();
        sealed.seek(0);
        crypto::UnsealReader reader(sealed, size, key, chain, crypto::EndRule::textTail());
        std::vector<std::uint8_t> plain(size);
        if (reader.read(plain) > text.size()) return text;
    }
    ADD_FAILURE() << "no text with such a tail was found";
    return {};
}

/// How many characters make `size` one more than a multiple of the block size.
inline std::size_t paddingToOneByte(std::size_t size) {
    return (17 - size % 16) % 16;
}

}  // namespace corvalence::test
