#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "platform/file_system.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::files {

/// The installation's own files, told by path and by identity: a link or a mount leads to the same file by
/// another name. A container that is copied into itself would never end, and one that is restored over is
/// lost.
class OwnFiles {
  public:
    /// What is written while `context` is open: database, its working files, backup database, container and
    /// list of backups, lock and journal. Files that come into being later are known by their paths only.
    static OwnFiles ofDatabase(store::Vault& vault, const store::OpenDatabaseContext& context);
    /// These, and all that lies in the folders of backups and of the schedule. Throws base::FileFailure where
    /// they cannot be listed.
    static OwnFiles ofInstallation(store::Vault& vault, const store::OpenDatabaseContext& context);

    /// By the path's comparison key.
    bool hasKey(const std::string& key) const { return keys_.contains(key); }
    bool has(const platform::FileIdentity& identity) const;

  private:
    explicit OwnFiles(store::Vault& vault) : files_(vault.platform.files), paths_(vault.platform.paths) {}
    void note(const std::string& path);

    platform::FileSystem& files_;
    const base::PathRules& paths_;
    std::unordered_set<std::string> keys_;
    std::vector<platform::FileIdentity> identities_;
};

}  // namespace corvalence::files
