#pragma once

#include <optional>
#include <string>

#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::store {

/// Fills a database that has just been made; the kinds' own folders implement it.
class CreationWorker {
  public:
    virtual ~CreationWorker() = default;
    /// False where the user cancelled; the database is then as its kind leaves it.
    virtual bool fill(OpenDatabaseContext& context) = 0;
};

struct CreationRequest {
    std::string location;
    std::string name;
    DatabaseKind kind = DatabaseKind::Numbered;
    crypto::DigestCode digest = crypto::DigestCode::Md5;
};

/// Makes a database: an empty file, its line in the index, the pair of backup files for numbered kinds, then
/// its contents. Refusals go to the user as messages and leave nothing behind: no context is returned. Throws
/// base::FileFailure.
class DatabaseCreation {
  public:
    explicit DatabaseCreation(Vault& vault) : vault_(vault) {}

    std::optional<OpenDatabaseContext> create(const CreationRequest& request,
                                              CreationWorker* worker = nullptr);

  private:
    std::optional<std::string> acceptPath(const CreationRequest& request);
    std::int64_t nextNumber(const std::vector<IndexRecord>& records);

    Vault& vault_;
};

/// The location as the database's path uses it: with a closing separator; on Windows "c" and "c\" mean drive
/// C.
std::string completeLocation(const std::string& location, const base::PathRules& paths);

}  // namespace corvalence::store
