#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "files/add_scan.h"
#include "files/content_test.h"
#include "files/database_copy.h"
#include "store/open_database.h"

namespace corvalence::files {

struct RemoveReport {
    std::uint64_t removed = 0;
    bool cancelled = false;
    std::string text;  // the report for the user; empty where he went back on it
};

/// Takes files out of an open File Contents database, with their backups where the settings keep them. The
/// files themselves are never touched. The database is sealed once a command, and the container of backups
/// written anew once.
class RemovePipeline {
  public:
    /// Told how many files are about to go; false keeps them all.
    using Confirm = std::function<bool(std::uint64_t count)>;

    RemovePipeline(store::Vault& vault, store::OpenDatabaseContext& context, Confirm confirm)
        : vault_(vault), context_(context), confirm_(std::move(confirm)) {}

    /// Removes files by name. What is not listed is passed over. Throws base::FileFailure, DatabaseChanged,
    /// BackupDamaged, as the others do.
    RemoveReport removeFiles(const std::vector<std::string>& paths);
    RemoveReport removeAll();
    /// Removes the files whose path begins with `location`, any for "*", and that meet the criteria. These
    /// are tested on the records; only what asks for content reads the file, and one that cannot be opened
    /// fails the test.
    RemoveReport removeMatching(const std::string& location, const Criteria& criteria);

  private:
    enum class Verdict { Goes, Stays, Cancelled };
    using Selection = std::function<Verdict(std::string_view line, platform::Progress& progress)>;
    class Command;

    RemoveReport run(const Selection& selection, std::string_view nothing, const std::string& success);

    store::Vault& vault_;
    store::OpenDatabaseContext& context_;
    Confirm confirm_;
};

/// What is asked before files are removed.
std::string removeQuestion(std::uint64_t count, const std::string& database);

}  // namespace corvalence::files
