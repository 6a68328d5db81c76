#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "crypto/secret_text.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::store {

/// The sealed list "Component Index" beside the Database Index: one line for each file of a database that is
/// not the database's own path. Each call unseals it into memory, and those that change it replace it whole.
/// A list that is not there is an empty one. All calls throw base::FileFailure.
class ComponentIndex {
  public:
    explicit ComponentIndex(Vault& vault) : vault_(vault) {}

    std::string path() const;

    std::vector<SealedFileRecord> records() const;
    std::optional<SealedFileRecord> find(const std::string& file) const;

    /// The whole list as it is to be sealed, with the digests that `digestOf` has for its records; one for
    /// which it has none stays as it is.
    crypto::SecretText textWith(
        const std::function<std::optional<std::string>(const SealedFileRecord&)>& digestOf) const;

    /// Adds the records; one of the same path is replaced.
    void put(const std::vector<SealedFileRecord>& added);
    /// Nothing happens for paths that are not listed.
    void remove(const std::vector<std::string>& files);

  private:
    void write(const std::vector<SealedFileRecord>& records);

    Vault& vault_;
};

}  // namespace corvalence::store
