// An unsealed list of backups.

#include <algorithm>

#include "files/backup_index.h"
#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvalence;
    try {
        const files::BackupIndex index({}, crypto::SecretText(fuzz::textOf(data, size)), "index");
        std::uint64_t offset = 0;
        for (std::size_t i = 0; i < index.size(); ++i) {
            const files::BackupIndexEntry entry = index.entry(i);
            fuzz::require(entry.offset == offset, "entries lie one behind the other");
            offset += entry.storedLength;
            fuzz::require(entry.plainLength().value_or(0) <= entry.storedLength,
                          "no entry is longer than it is");
            const auto found = index.find(entry.path);
            fuzz::require(std::find(found.begin(), found.end(), i) != found.end(),
                          "an entry is found by its path");
        }
        fuzz::require(offset == index.storedTotal(), "the total is the sum");
        fuzz::require(size - index.text().size() < 16, "no more than a stale tail is left over");
    } catch (const files::BackupDamaged&) {
        // The refusal that such a list gets.
    }
    return 0;
}
