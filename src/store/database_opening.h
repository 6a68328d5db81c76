#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/database_index.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::store {

enum class OpenResult {
    Opened,
    Restored,   // opened after the backup database was copied over it
    NotListed,  // no record in the index: a backup, an old or a copied database
    Refused,    // changed and not recovered, by the user's choice or because the backup is changed as well
    Cancelled,
};

/// Opens databases with their integrity proved against the index. All messages go to the user here; the
/// result says which way it went. Throws base::FileFailure.
class DatabaseOpening {
  public:
    explicit DatabaseOpening(Vault& vault) : vault_(vault), index_(vault) {}

    /// Proves the digest of each of its files, and where one differs or is gone offers its backup, which is
    /// copied over it if its own digest is right. A file that a killed run had sealed beside its old self is
    /// put in place first, if it is the one that the index expects.
    OpenResult openWithRecovery(const std::string& path, std::optional<OpenDatabaseContext>& context);

    /// Whether all sealed files have the digests of their records: for lists of databases. No messages.
    enum class State { Ok, Changed, Missing };
    State state(const IndexRecord& record);
    /// The same for the files of a listed database.
    State state(const std::vector<SealedFileRecord>& files);

    /// Carries on or drops the saves, creations and deletions that WorkingFiles names as pending. To be
    /// called once, after the password is proved.
    void settlePending();

  private:
    void settlePendingSaves();
    void settlePendingCreations();
    void completeSave(const SealedFileRecord& file);
    OpenResult prove(const SealedFileRecord& file);
    std::string shownDigest(const std::string& path);
    OpenResult recover(const SealedFileRecord& record, const std::string& reason);

    Vault& vault_;
    DatabaseIndex index_;
};

}  // namespace corvalence::store
