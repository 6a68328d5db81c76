#include "files/backup_rewrite.h"

#include <numeric>

#include "crypto/sealed_file.h"
#include "platform/file_copy.h"

namespace corvalence::files {

namespace {

constexpr std::size_t kLeftOut = static_cast<std::size_t>(-1);

/// Copies the stretches to the new container. Neighbours go as one, so that a small file costs no calls of
/// its own.
bool copyStretches(const BackupIndex& index, const std::vector<std::size_t>& order, platform::File& from,
                   platform::File& to, platform::Progress& progress) {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    const auto copy = [&] {
        from.seek(begin);
        return platform::copyBytes(from, to, end - begin, progress);
    };
    for (const std::size_t number : order) {
        const BackupIndexEntry entry = index.entry(number);
        if (entry.offset != end) {
            if (!copy()) return false;
            begin = entry.offset;
        }
        end = entry.offset + entry.storedLength;
    }
    return copy();
}

}  // namespace

bool rewriteBackups(store::Vault& vault, const store::BackupPair& pair, const BackupIndex& index,
                    const std::vector<std::size_t>& order, platform::Progress& progress) {
    auto old = vault.platform.files.openExclusive(pair.file);
    if (old->size() < index.storedTotal()) old->resize(index.storedTotal());
    auto container = vault.working.createSealed(pair.file, crypto::kSealedBesideSuffix);
    if (!copyStretches(index, order, *old, container.file(), progress)) return false;

    auto list = vault.working.createSealed(pair.index, crypto::kSealedBesideSuffix);
    crypto::SealWriter writer(list.file(), vault.session.key, crypto::BackupIV(pair.index));
    for (const std::size_t number : order)
        writer.write(base::bytesOf(index.entry(number).line));
    writer.finish();

    old.reset();
    std::vector<std::pair<crypto::TemporaryFile, std::string>> moves;
    moves.emplace_back(std::move(container), pair.file);
    moves.emplace_back(std::move(list), pair.index);
    vault.working.commitMoves(std::move(moves));
    return true;
}

std::vector<std::size_t> orderWithReplacements(const BackupIndex& index, std::size_t firstNew) {
    std::vector<std::size_t> places(index.size());
    std::iota(places.begin(), places.end(), std::size_t{0});
    for (std::size_t number = firstNew; number < index.size(); ++number) {
        const auto entries = index.find(index.entry(number).path);
        // The latest takes the first place of its path.
        for (const std::size_t entry : entries)
            places[entry] = kLeftOut;
        places[entries.front()] = entries.back();
    }
    std::erase(places, kLeftOut);
    return places;
}

}  // namespace corvalence::files
