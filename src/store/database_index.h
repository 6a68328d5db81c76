#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "crypto/sealed_file.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::store {

enum class PasswordProof { Proved, Refused, IndexMissing };

/// The sealed list of all databases of the installation. Each call unseals it into memory, and those that
/// change it seal it again beside itself and rename it over the old one: a crash leaves the old or the new
/// list.
///
/// Look-up is by the path as prefix of a line, letters compared as this system compares paths, and the first
/// hit wins; the character behind the prefix is not looked at. Throws base::FileFailure, RequiredFileMissing
/// where the index is gone.
class DatabaseIndex {
  public:
    explicit DatabaseIndex(Vault& vault) : vault_(vault) {}

    std::string path() const;

    /// Whether the session's key opens the index. An index of 0 bytes is opened by any key, a missing one by
    /// none.
    PasswordProof provePassword() const;

    std::vector<IndexRecord> records() const;
    std::optional<IndexRecord> findRecord(const std::string& databasePath) const;
    /// The record whose path is exactly this one.
    std::optional<IndexRecord> findExact(const std::string& databasePath) const;

    /// The whole list as it is to be sealed, with the digests that `digestOf` has for its records; a record
    /// for which it has none, and a line that is no record, stay as they are.
    crypto::SecretText textWith(
        const std::function<std::optional<std::string>(const IndexRecord&)>& digestOf) const;

    void appendRecord(const IndexRecord& record);
    /// Puts a new digest into the line's fifth field; the other fields stay. Nothing happens without a hit.
    void updateDigest(const std::string& databasePath, const std::string& digest);
    /// Replaces or adds the last-check stamp.
    void stampChecked(const std::string& databasePath, base::FileTime time);
    void removeRecord(const std::string& databasePath);

  private:
    using Lines = std::vector<std::string>;
    Lines readLines(const crypto::UnsealVariant& variant) const;
    void writeLines(const Lines& lines);
    void changeFirstHit(const std::string& databasePath, const crypto::UnsealVariant& variant,
                        const std::function<std::optional<IndexRecord>(IndexRecord)>& change);

    Vault& vault_;
};

}  // namespace corvalence::store
