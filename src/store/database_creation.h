#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

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

/// A numbered database that comes into being in several steps: until it is completed it goes whole, with this
/// object or at the latest with the next start.
class UnfinishedDatabase {
  public:
    UnfinishedDatabase(Vault& vault, IndexRecord record) : vault_(vault), context_{std::move(record)} {}
    ~UnfinishedDatabase();
    UnfinishedDatabase(const UnfinishedDatabase&) = delete;
    UnfinishedDatabase& operator=(const UnfinishedDatabase&) = delete;

    OpenDatabaseContext& context() noexcept { return context_; }

    /// Lists the files as the database's components, copies them to their backups and keeps all. Throws
    /// base::FileFailure: then the database is still unfinished.
    void complete(const std::vector<std::unique_ptr<NewFiles>>& components);

  private:
    Vault& vault_;
    OpenDatabaseContext context_;
    bool isWhole_ = false;
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
    /// An empty numbered database that is to become a Complete System; null where it was refused.
    std::unique_ptr<UnfinishedDatabase> begin(const CreationRequest& request);
    /// A database of one of the other kinds. Nothing as well where the worker was cancelled.
    std::optional<OpenDatabaseContext> create(const CreationRequest& request, CreationWorker& worker);

  private:
    std::optional<std::string> acceptPath(const CreationRequest& request);
    /// Why the database cannot have this path, as the message for the user.
    std::optional<std::string> findTakenPlace(const std::string& path, DatabaseKind kind);
    IndexRecord newRecord(const CreationRequest& request, const std::string& path);
    void makeNumbered(const IndexRecord& record);
    std::int64_t nextNumber(const std::vector<IndexRecord>& records);

    Vault& vault_;
};

/// Whether a name holds what no database's name may hold: one of \ / : * ? " < > | or what a record cannot
/// hold.
bool hasForbidden(const std::string& name);

/// The location as the database's path uses it: with a closing separator; on Windows "c" and "c\" mean drive
/// C.
std::string completeLocation(const std::string& location, const base::PathRules& paths);

}  // namespace corvalence::store
