#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_set>

#include "platform/file_system.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::components {

/// The files that the installation itself writes, by folder and name: databases with their siblings, backups
/// and temporaries, index, backups of files, schedule, logs, reports, settings, journal and lock. Walks leave
/// them out, so that a machine on which only this program worked is unchanged. Folders are told by their
/// identity, as a walk may reach them by another path than the settings name.
class OwnNames {
  public:
    using Names = std::unordered_set<std::string>;

    /// Those of all listed databases. Throws base::FileFailure.
    explicit OwnNames(store::Vault& vault);
    /// And those of a database that is about to be made, unless it is listed, as that of a component is.
    OwnNames(store::Vault& vault, store::DatabaseKind kind, const std::string& database);

    /// Whether a file is one of them. Costs little where files of the same folder follow each other.
    bool hold(const std::string& path);

    /// The own names in a folder, as comparison keys; null where there are none.
    const Names* in(const platform::FileIdentity& folder) const;

  private:
    void noteDatabase(store::DatabaseKind kind, const std::string& database);
    /// Adds a file and the names that its temporaries can have.
    void note(const std::string& path);

    store::Vault& vault_;
    std::string heldFolder_;  // of the last path that hold() was asked for
    const Names* held_ = nullptr;
    std::map<std::string, std::optional<platform::FileIdentity>> folders_;
    std::map<platform::FileIdentity, Names> names_;
};

}  // namespace corvalence::components
