// The rules by which unsealing finds the end of a text. The first byte chooses rule and block size of
// reading, the rest is either sealed and unsealed again or taken as sealed.

#include <algorithm>
#include <string>
#include <vector>

#include "crypto/sealed_stream.h"
#include "fuzz_target.h"
#include "memory_file.h"

namespace {

using namespace corvalence;

std::string unseal(test::MemoryFile& sealed, crypto::EndRule rule, std::size_t step,
                   const crypto::SessionKey& key) {
    sealed.seek(0);
    crypto::UnsealReader reader(sealed, sealed.bytes.size(), key, crypto::ChainValue{}, rule);
    std::string text;
    std::vector<std::uint8_t> block(step);
    while (const std::size_t count = reader.read(block))
        text += base::textOf(base::ByteView(block).first(count));
    return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::uint8_t choice = *data;
    const base::ByteView input(data + 1, size - 1);
    static const crypto::SessionKey key("open sesame");
    const std::size_t step = 1 + choice / 8U;

    test::MemoryFile sealed;
    crypto::SealWriter writer(sealed, key, crypto::ChainValue{});
    writer.write(input);
    writer.finish();
    const std::string_view plain = base::textOf(input);
    fuzz::require(sealed.bytes.size() == (plain.size() + 15) / 16 * 16, "sealing fills whole blocks");
    fuzz::require(unseal(sealed, crypto::EndRule::exactLength(plain.size()), step, key) == plain,
                  "an exact length gives back the text");
    const std::string tail = unseal(sealed, crypto::EndRule::textTail(), step, key);
    if (plain.ends_with("\r\n"))
        fuzz::require(tail.starts_with(plain), "a text whose lines end in CR LF keeps its last line");
    fuzz::require(unseal(sealed, crypto::EndRule::shortTail(), step, key).size() <= sealed.bytes.size(),
                  "no rule invents bytes");

    test::MemoryFile raw;
    raw.bytes.assign(input.begin(), input.end());
    const crypto::EndRule rules[] = {crypto::EndRule::textTail(), crypto::EndRule::shortTail(),
                                     crypto::EndRule::exactLength(choice)};
    try {
        const std::string text = unseal(raw, rules[choice % 3], step, key);
        fuzz::require(text.size() <= raw.bytes.size(), "no rule invents bytes");
    } catch (const base::FileFailure& failure) {
        fuzz::require(failure.cause() == base::Cause::InvalidFile,
                      "only what is no run of blocks is refused");
    }
    return 0;
}
