#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "files/add_scan.h"
#include "files/backup_store.h"
#include "files/database_copy.h"
#include "store/open_database.h"

namespace corvalence::files {

/// Which backups an add command makes.
enum class AddBackups {
    Configured,  // as the settings say
    None,
    Plain,
    Sealed,
};

/// What a search for files found; to be shown before anything is added.
struct AddSearch {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
    bool canProceed = true;  // there is room for the backups
};

struct AddOptions {
    bool notifyListed = false;  // a message for each file that is listed already
    bool notifyFailed = true;   // a message for each file that cannot be added
    AddBackups backups = AddBackups::Configured;
    /// Asked once the files of a location have been found; false adds none of them.
    std::function<bool(const AddSearch& found)> proceed = [](const AddSearch&) { return true; };
};

struct AddReport {
    std::uint64_t added = 0;
    std::uint64_t listed = 0;
    std::uint64_t failed = 0;
    std::uint64_t ownFiles = 0;  // the installation's own files, which a walk leaves out
    PassedOver passedOver;
    bool refused = false;   // the location, or for lack of room; it has been told, and nothing was added
    bool declined = false;  // by the user, after the search
    bool cancelled = false;
    bool kept = true;  // after Cancel: whether the files added before were kept
    std::string text;  // the report for the user
};

/// Brings files into an open File Contents database, with their backups where the settings ask for them.
/// Database and list of backups are sealed once, at the end of the command; a failure before that leaves both
/// as they were.
class AddPipeline {
  public:
    AddPipeline(store::Vault& vault, store::OpenDatabaseContext& context)
        : vault_(vault), context_(context) {}

    /// Adds files by name, in the order given. Throws base::FileFailure, DatabaseChanged, BackupDamaged.
    AddReport addFiles(const std::vector<std::string>& paths, const AddOptions& options);
    /// Adds the files below a folder, or on every drive for "*", that meet the criteria. They are searched
    /// for first, so that a user who cancels the search has changed nothing, and nothing is added where there
    /// is no room for their backups.
    AddReport addLocation(const std::string& location, const Criteria& criteria, const AddOptions& options);
    /// Adds what a search found on every drive, whatever room there is, within work that is shown already.
    /// Throws what addFiles() does.
    AddReport addFound(AddScan scan, const AddOptions& options, platform::Progress& progress);

  private:
    class Command;

    std::unique_ptr<platform::Progress> openProgress(std::size_t files) const;
    AddScan search(const std::string& location, const Criteria& criteria, const AddOptions& options);
    /// Told where there is none.
    bool hasRoom(const AddScan& scan, const AddOptions& options) const;

    store::Vault& vault_;
    store::OpenDatabaseContext& context_;
};

/// "<n> File[s] located in <location> successfully added to the database." and its variants. `location` "*"
/// stands for every drive.
std::string addReportText(std::uint64_t added, std::uint64_t listed, const std::string& location);

}  // namespace corvalence::files
