#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/file_failure.h"
#include "base/path_rules.h"
#include "crypto/secret_text.h"
#include "store/backup_pair.h"
#include "store/vault.h"

namespace corvalence::files {

/// A backup index that holds something which is no entry, so that no position in the container can be
/// trusted.
class BackupDamaged : public base::FileFailure {
  public:
    explicit BackupDamaged(const std::string& path);
};

/// One stretch of "Backup File N": path 0x7F storage 0x7F stored length 0x7F original size CR LF.
struct BackupIndexEntry {
    std::string_view path;
    bool sealed = false;             // storage "N"; "P" is plain
    std::uint64_t storedLength = 0;  // bytes in the container
    std::uint64_t offset = 0;        // in the container: the sum of the lengths in front
    std::uint32_t originalSize = 0;  // low 32 bits
    std::string_view line;           // with its line end

    /// Bytes of the file: for a sealed stretch the one length that fits both its blocks and the low 32 bits
    /// of the original size. Nothing where none fits.
    std::optional<std::uint64_t> plainLength() const noexcept;
};

std::string renderBackupIndexEntry(std::string_view path, bool sealed, std::uint64_t storedLength,
                                   std::uint64_t originalSize);

/// The unsealed list of backups of one database, in memory, in the order of the container.
class BackupIndex {
  public:
    /// Unseals it; a missing file counts as an empty list (callers repair the pair first). Throws
    /// base::FileFailure, BackupDamaged.
    BackupIndex(store::Vault& vault, const store::BackupPair& pair);
    /// From its unsealed text; `path` is for BackupDamaged.
    BackupIndex(const base::PathRules& paths, crypto::SecretText text, const std::string& path);

    std::size_t size() const noexcept { return entries_.size(); }
    BackupIndexEntry entry(std::size_t number) const;
    /// Sum of all stored lengths: where the next stretch begins.
    std::uint64_t storedTotal() const noexcept { return total_; }
    /// The text of all entries, without what a sealed block left behind the last.
    std::string_view text() const noexcept { return text_.view().substr(0, textEnd_); }
    /// Numbers of the entries of a path, in the order of the container. By the whole field, never by prefix.
    std::vector<std::size_t> find(std::string_view path) const;

  private:
    struct Place {
        std::uint64_t textOffset;
        std::uint64_t storedOffset;
    };

    void parse(const std::string& path);
    std::uint64_t hashOf(std::string_view path) const;

    base::PathRules paths_;
    crypto::SecretText text_;
    std::size_t textEnd_ = 0;
    std::uint64_t total_ = 0;
    std::vector<Place> entries_;
    // Made at the first look-up, ordered by hash: a path's entries without a scan for each.
    mutable std::vector<std::pair<std::uint64_t, std::size_t>> byHash_;
};

}  // namespace corvalence::files
