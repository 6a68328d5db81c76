#pragma once

#include <memory>
#include <string>

#include "cli/context.h"
#include "core/start.h"
#include "files/file_record.h"
#include "store/database_index.h"
#include "store/open_database.h"

namespace corvalence::cli {

// The first steps that commands have in common. Each throws CommandEnd where the command ends there.

/// Refused where the settings name no installation, or one that was copied or moved.
void requireInstallation(Context& context);

/// Refused where --home names a folder whose settings are those of an installation elsewhere.
void refuseMovedInstallation(Context& context);

void requireAdministrator(Context& context);

/// The lock of the installation in `root`, for commands that need no password.
std::unique_ptr<platform::InstanceLock> lockInstallation(Context& context, const std::string& root);

/// Lock, password and clean-up: all that comes before working on sealed data.
std::unique_ptr<core::Run> startRun(Context& context);
/// The same, asking through a prompt that has more to say afterwards.
std::unique_ptr<core::Run> startRun(Context& context, core::PasswordDialog& prompt);

/// The index record that a DATABASE argument means: a full path, or a file name that only one record has. A
/// file that exists but is not listed gives nothing: opening it says why it is refused.
std::optional<store::IndexRecord> findDatabase(Context& context, core::Run& run, const std::string& argument);

/// The same, opened with its integrity proved; recovered from its backup database where the user wants it.
store::OpenDatabaseContext openDatabase(Context& context, core::Run& run, const std::string& argument);

/// The same for a database that lists files.
store::OpenDatabaseContext openFileDatabase(Context& context, core::Run& run, const std::string& argument);

/// The record of a FILE argument; the command fails where the database does not list it.
files::FileRecord findRecord(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                             const std::string& file);

/// Puts a database that was made or opened first in the list of recent ones.
void noteRecent(core::Run& run, const std::string& path);

/// Refused where the database does not list files.
void requireFileDatabase(const store::OpenDatabaseContext& database);

inline constexpr std::string_view kCompleteSystem = "complete-system";

/// The kind of a database as `create` takes it: "file-contents". Numbered ones that are a Complete System
/// have another name, kCompleteSystem.
std::string_view kindName(store::DatabaseKind kind);
/// The kind of that name; a Complete System is a numbered one as well.
std::optional<store::DatabaseKind> findKind(std::string_view name);
/// All names that findKind() knows.
std::string kindNames();

}  // namespace corvalence::cli
