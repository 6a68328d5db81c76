#include "store/reseal_pass.h"

#include <algorithm>

#include "base/hex_text.h"
#include "base/page_buffer.h"
#include "crypto/digester.h"
#include "crypto/secure_zero.h"
#include "platform/file_copy.h"

namespace corvalence::store {

namespace {

constexpr std::string_view kNewSuffix = "123456789n";
/// What a file takes on a disk beyond its bytes, at the most.
constexpr std::uint64_t kClusterSize = 4096;

/// A new file that does not hold what the old one holds.
class NotProved : public base::FileFailure {
  public:
    explicit NotProved(const std::string& path)
        : base::FileFailure(base::Cause::Generic, path,
                            path +
                                " was sealed anew and does not read back as it should. Nothing was "
                                "changed; test the memory and the disk of this machine.") {}
};

/// The part of the progress bar that all files together have moved so far.
class Bar {
  public:
    Bar(platform::Progress& progress, std::uint64_t total) : progress_(progress), total_(total) {}

    /// False where the user cancelled.
    bool advance(std::uint64_t bytes) {
        done_ += bytes;
        const double share = total_ == 0 ? 1.0 : static_cast<double>(done_) / static_cast<double>(total_);
        progress_.bar(static_cast<std::uint32_t>(std::min(share, 1.0) * platform::Progress::kSteps));
        return !progress_.cancelled();
    }

  private:
    platform::Progress& progress_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
};

/// Plain text on its way, overwritten when it has passed.
class PlainBlock {
  public:
    PlainBlock() : block_(platform::kBlockSize) {}
    ~PlainBlock() { crypto::secureZero(block_.data(), block_.size()); }
    PlainBlock(const PlainBlock&) = delete;
    PlainBlock& operator=(const PlainBlock&) = delete;
    base::ByteSpan upTo(std::uint64_t size) {
        return block_.bytes().first(static_cast<std::size_t>(std::min<std::uint64_t>(size, block_.size())));
    }

  private:
    base::PageBuffer block_;
};

/// Hands the plain bytes of a stretch on, from the file's position. Their number; nothing where the sink
/// wanted no more.
template <typename Sink>
std::optional<std::uint64_t> readStretch(platform::File& file, const Stretch& stretch,
                                         const crypto::SessionKey& key, const crypto::ChainValue& chain,
                                         crypto::Md5* digest, PlainBlock& block, Sink&& sink) {
    std::optional<crypto::UnsealReader> reader;
    if (stretch.sealed) reader.emplace(file, stretch.length, key, chain, *stretch.sealed, digest);
    std::uint64_t read = 0;
    for (;;) {
        const base::ByteSpan wanted = block.upTo(reader ? UINT64_MAX : stretch.length - read);
        const std::size_t count = reader ? reader->read(wanted) : file.read(wanted);
        if (count == 0) break;
        read += count;
        if (!sink(base::ByteView(wanted).first(count))) return std::nullopt;
    }
    if (!reader && read != stretch.length) throw base::FileFailure(base::Cause::EndOfFile, 0, file.path());
    return read;
}

std::uint64_t lengthOf(const std::vector<Stretch>& stretches) {
    std::uint64_t length = 0;
    for (const Stretch& stretch : stretches)
        length += stretch.length;
    return length;
}

}  // namespace

NoRoom::NoRoom(const std::string& folder, std::uint64_t needed, std::uint64_t available)
    : base::FileFailure(base::Cause::DiskFull, folder,
                        "There is not enough room to change the password: all sealed files are written anew "
                        "before the old ones go. The disk of " +
                            folder + " has " + std::to_string(available) + " free bytes, and " +
                            std::to_string(needed) + " are needed. Nothing was changed.") {}

void requireRoom(Vault& vault, const std::vector<ResealTarget>& targets) {
    struct Need {
        std::string folder;
        std::uint64_t bytes = 0;
    };
    platform::Platform& system = vault.platform;
    std::map<std::string, std::string> rootOfFolder;
    std::map<std::string, Need> needs;  // by root of volume
    for (const ResealTarget& target : targets) {
        const auto status = system.files.status(target.path, platform::Follow::Yes);
        if (!status) continue;
        const std::string folder(system.paths.folder(target.path));
        std::string& root = rootOfFolder[folder];
        if (root.empty()) root = system.volumes.rootOf(folder);
        Need& need = needs[root];
        need.folder = folder;
        need.bytes += (status->size / kClusterSize + 1) * kClusterSize;
    }
    for (const auto& [root, need] : needs) {
        const auto capacity = system.status.disk(need.folder);
        if (capacity && capacity->available < need.bytes)
            throw NoRoom(need.folder, need.bytes, capacity->available);
    }
}

/// One file on its way.
class ResealPass::Transfer {
  public:
    Transfer(ResealPass& pass, const ResealTarget& target, std::uint64_t size, Bar& bar)
        : pass_(pass), target_(target), bar_(bar) {
        if (target.layout) {
            stretches_ = target.layout();
        } else {
            stretches_ = {{size, crypto::EndRule::textTail()}};
        }
    }

    bool run() {
        crypto::TemporaryFile beside = pass_.vault_.working.createSealed(target_.path, kNewSuffix);
        if (!seal(beside.file())) return false;
        if (target_.keepsProtection) pass_.vault_.platform.access.copyProtection(target_.path, beside.file());
        beside.close();
        if (!prove(beside.path())) return false;
        if (!target_.layout)
            pass_.digests_[target_.path] = {base::hexText(before_.finish()), base::hexText(now_.finish())};
        pass_.moves_.emplace_back(std::move(beside), target_.path);
        return true;
    }

  private:
    /// Seals the stretches anew and notes how long each one's plain text is.
    bool seal(platform::File& to) {
        const auto from = pass_.vault_.platform.files.openShared(target_.path);
        crypto::SealWriter writer(to, pass_.next_.key, target_.chain);
        crypto::Digester digester(crypto::DigestCode::Sha1);
        for (Stretch& stretch : stretches_) {
            const auto length = readStretch(*from, stretch, pass_.vault_.session.key, target_.chain,
                                            digest(before_), block_, [&](base::ByteView plain) {
                                                digester.update(plain);
                                                stretch.sealed ? writer.write(plain) : to.write(plain);
                                                return bar_.advance(plain.size());
                                            });
            if (!length) return false;
            if (stretch.sealed) {
                writer.finish();
                stretch.sealed = crypto::EndRule::exactLength(*length);
            }
        }
        content_ = digester.finish();
        return true;
    }

    /// Whether the new file holds the same; throws where it does not.
    bool prove(const std::string& path) {
        const auto file = pass_.vault_.platform.files.openShared(path);
        crypto::Digester digester(crypto::DigestCode::Sha1);
        if (file->size() != lengthOf(stretches_)) throw NotProved(path);
        for (const Stretch& stretch : stretches_) {
            const auto length = readStretch(*file, stretch, pass_.next_.key, target_.chain, digest(now_),
                                            block_, [&](base::ByteView plain) {
                                                digester.update(plain);
                                                return bar_.advance(plain.size());
                                            });
            if (!length) return false;
        }
        if (digester.finish() != content_) throw NotProved(path);
        return true;
    }

    /// The index knows texts by the digest of their sealed bytes.
    crypto::Md5* digest(crypto::Md5& md5) const { return target_.layout ? nullptr : &md5; }

    ResealPass& pass_;
    const ResealTarget& target_;
    Bar& bar_;
    std::vector<Stretch> stretches_;
    PlainBlock block_;
    std::string content_;
    crypto::Md5 before_;
    crypto::Md5 now_;
};

bool ResealPass::reseal(const std::vector<ResealTarget>& targets, platform::Progress& progress) {
    std::uint64_t total = 0;
    std::vector<std::uint64_t> sizes;
    for (const ResealTarget& target : targets) {
        const auto status = vault_.platform.files.status(target.path, platform::Follow::Yes);
        sizes.push_back(status ? status->size : 0);
        total += sizes.back() * 2;  // once to seal, once to prove
    }
    Bar bar(progress, total);
    for (std::size_t i = 0; i < targets.size(); ++i) {
        progress.item({targets[i].path, targets.size() - i - 1});
        if (sizes[i] > 0 && !Transfer(*this, targets[i], sizes[i], bar).run()) return false;
    }
    return true;
}

void ResealPass::seal(const std::string& path, std::string_view text, const crypto::ChainValue& chain) {
    crypto::TemporaryFile beside = vault_.working.createSealed(path, kNewSuffix);
    crypto::SealWriter writer(beside.file(), next_.key, chain);
    writer.write(base::bytesOf(text));
    const std::uint64_t size = writer.finish();
    beside.close();
    const auto file = vault_.platform.files.openShared(beside.path());
    crypto::SecretText proof;
    proof.reserve(text.size());
    PlainBlock block;
    const Stretch whole{size, crypto::EndRule::exactLength(text.size())};
    readStretch(*file, whole, next_.key, chain, nullptr, block, [&](base::ByteView plain) {
        proof.append(base::textOf(plain));
        return true;
    });
    if (file->size() != size || proof.view() != text) throw NotProved(beside.path());
    moves_.emplace_back(std::move(beside), path);
}

std::optional<std::string> ResealPass::digestNow(const std::string& path, const std::string& before) const {
    const auto found = digests_.find(path);
    if (found == digests_.end() || found->second.before != before) return std::nullopt;
    return found->second.now;
}

void ResealPass::commit() {
    vault_.working.commitMoves(std::exchange(moves_, {}));
}

}  // namespace corvalence::store
