#include "files/backup_reseal.h"

#include <algorithm>

#include "files/backup_index.h"

namespace corvalence::files {

namespace {

constexpr std::uint64_t kBlock = crypto::CipherContext::kBlockSize;

std::uint64_t sizeOf(store::Vault& vault, const std::string& path) {
    const auto status = vault.platform.files.status(path, platform::Follow::Yes);
    return status ? status->size : 0;
}

class Layout {
  public:
    explicit Layout(std::uint64_t containerSize) : left_(containerSize) {}

    void append(const BackupIndexEntry& entry) {
        const std::uint64_t length = std::min(entry.storedLength, left_);
        left_ -= length;
        if (!entry.sealed || !entry.plainLength()) {
            appendPlain(length);
        } else if (length == entry.storedLength) {
            stretches_.push_back({length, crypto::EndRule::exactLength(*entry.plainLength())});
        } else {
            // The container ends within it: the blocks that are there stay readable.
            const std::uint64_t whole = length / kBlock * kBlock;
            stretches_.push_back({whole, crypto::EndRule::exactLength(whole)});
            appendPlain(length - whole);
        }
    }

    std::vector<store::Stretch> take() { return std::move(stretches_); }

  private:
    /// Neighbours go as one.
    void appendPlain(std::uint64_t length) {
        if (stretches_.empty() || stretches_.back().sealed) stretches_.push_back({});
        stretches_.back().length += length;
    }

    std::uint64_t left_;
    std::vector<store::Stretch> stretches_;
};

std::vector<store::Stretch> layoutOf(store::Vault& vault, const store::BackupPair& pair) {
    const BackupIndex index(vault, pair);
    Layout layout(sizeOf(vault, pair.file));
    for (std::size_t number = 0; number < index.size(); ++number)
        layout.append(index.entry(number));
    return layout.take();
}

}  // namespace

std::vector<store::ResealTarget> resealTargets(store::Vault& vault, const store::BackupPair& pair) {
    if (sizeOf(vault, pair.index) == 0) return {};
    const crypto::ChainValue chain = crypto::BackupIV(pair.index);
    const auto layout = layoutOf(vault, pair);
    std::vector<store::ResealTarget> targets = {{pair.index, chain}};
    const bool holdsSealed = std::any_of(layout.begin(), layout.end(),
                                         [](const store::Stretch& stretch) { return stretch.sealed; });
    if (holdsSealed && sizeOf(vault, pair.file) > 0) {
        targets.push_back({pair.file, chain, [&vault, pair] { return layoutOf(vault, pair); }});
    }
    return targets;
}

}  // namespace corvalence::files
