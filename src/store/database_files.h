#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/component_files.h"
#include "store/index_record.h"
#include "store/vault.h"

namespace corvalence::store {

/// The files of a listed database with the digests that they must have, its own first. A file that belongs
/// to its kind and is not in the component index has the empty digest, which no file has. A numbered database
/// is a Complete System where the component index has a component of it, or one is there. Throws
/// base::FileFailure.
std::vector<SealedFileRecord> databaseFiles(Vault& vault, const IndexRecord& record);

/// The same for several databases, in their order.
std::vector<std::vector<SealedFileRecord>> databaseFiles(Vault& vault,
                                                         const std::vector<IndexRecord>& records);

/// Whether a listed database is a Complete System. Throws base::FileFailure.
bool isCompleteSystem(Vault& vault, const IndexRecord& record);

/// The files of one baseline of a listed database, in the order of componentFiles(), likewise.
std::vector<SealedFileRecord> componentRecords(Vault& vault, DatabaseKind kind, Form form,
                                               const IndexRecord& database);

/// All paths that a database of this kind can come to have files at: its own, its siblings, the backup of
/// each.
std::vector<std::string> databasePlaces(const Vault& vault, DatabaseKind kind, const std::string& path);

/// The file of a listed database that has exactly this path. Throws base::FileFailure.
std::optional<SealedFileRecord> findDatabaseFile(Vault& vault, const std::string& path);

}  // namespace corvalence::store
