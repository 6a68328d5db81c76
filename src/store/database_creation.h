#pragma once

#include <optional>
#include <string>

#include "store/new_files.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::store {

/// Writes a new baseline; the folder of the kinds implements it.
class CreationWorker {
  public:
    virtual ~CreationWorker() = default;
    /// Writes the lines of the kind's files, in the order of componentFiles(). False where the user
    /// cancelled: nothing is left of the database then.
    virtual bool fill(const std::string& database, NewFiles& files) = 0;
};

struct CreationRequest {
    std::string location;
    std::string name;
    DatabaseKind kind = DatabaseKind::Numbered;
    crypto::DigestCode digest = crypto::DigestCode::Md5;
};

/// Makes a database. A numbered one begins as an empty file with its line in the index and its pair of
/// backup files. The files of a baseline are written first, and only a whole one is listed: whatever ends its
/// creation leaves nothing behind. Refusals go to the user as messages and leave nothing behind either: no
/// context is returned. Throws base::FileFailure.
class DatabaseCreation {
  public:
    explicit DatabaseCreation(Vault& vault) : vault_(vault) {}

    /// A numbered database.
    std::optional<OpenDatabaseContext> create(const CreationRequest& request);
    /// A database of one of the other kinds. Nothing as well where the worker was cancelled.
    std::optional<OpenDatabaseContext> create(const CreationRequest& request, CreationWorker& worker);

  private:
    std::optional<std::string> acceptPath(const CreationRequest& request);
    /// Why the database cannot have this path, as the message for the user.
    std::optional<std::string> findTakenPlace(const std::string& path, DatabaseKind kind);
    IndexRecord newRecord(const CreationRequest& request, const std::string& path);
    std::int64_t nextNumber(const std::vector<IndexRecord>& records);

    Vault& vault_;
};

/// The location as the database's path uses it: with a closing separator; on Windows "c" and "c\" mean drive
/// C.
std::string completeLocation(const std::string& location, const base::PathRules& paths);

}  // namespace corvalence::store
