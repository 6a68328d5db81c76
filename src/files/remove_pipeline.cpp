#include "files/remove_pipeline.h"

#include <optional>
#include <unordered_set>

#include "base/record_text.h"
#include "files/backup_rewrite.h"
#include "files/backup_store.h"
#include "files/own_status.h"
#include "store/database_saving.h"

namespace corvalence::files {

namespace {

constexpr std::string_view kNothingRemoved = "No files were removed.";

std::string fileCount(std::uint64_t count) {
    return std::to_string(count) + (count > 1 ? " files" : " file");
}

/// Shows what its inner progress shows, but is never cancelled: records that are gone take their backups
/// with them.
class Uninterrupted : public platform::ForwardedProgress {
  public:
    using ForwardedProgress::ForwardedProgress;

    bool cancelled() override {
        ForwardedProgress::cancelled();  // a graphical front pumps its events there
        return false;
    }
};

}  // namespace

/// One remove command from the working copy to the sealed database.
class RemovePipeline::Command {
  public:
    Command(store::Vault& vault, store::OpenDatabaseContext& context)
        : vault_(vault),
          context_(context),
          progress_(vault.platform.ui.openProgress("Removing files from: " + context.path())) {}

    /// Finds the records that go. False where the user cancelled: nothing is removed then.
    bool select(const Selection& selection) {
        DatabaseCopy copy(vault_, context_);  // none stays while the user is asked
        RecordReader reader = copy.records();
        for (std::string_view line; reader.next(line); ++records_) {
            if (progress_->cancelled()) return false;
            const Verdict verdict = selection(line, *progress_);
            if (verdict == Verdict::Cancelled) return false;
            goes_.push_back(verdict == Verdict::Goes);
            if (verdict == Verdict::Goes) ++selected_;
        }
        return true;
    }
    std::uint64_t records() const noexcept { return records_; }
    std::uint64_t selected() const noexcept { return selected_; }

    /// Removes what was selected; after a Cancel, what was come to until then.
    RemoveReport remove() {
        RemoveReport report;
        std::unordered_set<std::string> gone;
        const std::optional<BackupIndex> backups = readBackups();
        DatabaseCopy copy(vault_, context_);
        takeUntilCancelled(copy, report, gone);
        if (report.removed == 0) return report;
        store::saveDatabase(vault_, context_, [&](crypto::SealWriter& writer) {
            RecordReader reader = copy.records();
            std::size_t number = 0;
            for (std::string_view line; reader.next(line); ++number)
                if (!goes_[number]) writer.write(base::bytesOf(line));
        });
        copy.discard();
        if (backups) removeBackups(*backups, gone);
        progress_->bar(platform::Progress::kSteps);
        return report;
    }

  private:
    /// The list of backups; a damaged one is told before anything is changed. None where backups are turned
    /// off.
    std::optional<BackupIndex> readBackups() {
        if (!vault_.configuration.isOn(settings::key::kBackupFiles)) return std::nullopt;
        if (!repairBackupPair(vault_, pair_))
            vault_.platform.ui.message(platform::Icon::Warning, std::string(kBackupFileMissing));
        return BackupIndex(vault_, pair_);
    }

    void takeUntilCancelled(DatabaseCopy& copy, RemoveReport& report, std::unordered_set<std::string>& gone) {
        RecordReader reader = copy.records();
        std::size_t number = 0;
        for (std::string_view line; reader.next(line); ++number) {
            if (!goes_[number]) continue;
            if (report.cancelled) {
                goes_[number] = false;
                continue;
            }
            const std::string path(pathOfLine(line));
            progress_->item({path, selected_ - ++report.removed});
            gone.insert(vault_.platform.paths.comparisonKey(path));
            report.cancelled = progress_->cancelled() && report.removed < selected_;
        }
    }

    void removeBackups(const BackupIndex& index, const std::unordered_set<std::string>& gone) {
        std::vector<std::size_t> kept;
        for (std::size_t number = 0; number < index.size(); ++number) {
            const std::string path(index.entry(number).path);
            if (!gone.contains(vault_.platform.paths.comparisonKey(path))) kept.push_back(number);
        }
        if (kept.size() == index.size()) return;
        const OwnStatus status(vault_.platform.ui, "Reconstructing Backup Files [" +
                                                       std::to_string(gone.size()) + " Remaining ] ...");
        Uninterrupted progress(*progress_);
        rewriteBackups(vault_, pair_, index, kept, progress);
    }

    store::Vault& vault_;
    store::OpenDatabaseContext& context_;
    std::unique_ptr<platform::Progress> progress_;
    const store::BackupPair pair_ = store::backupPair(vault_.configuration, context_.backupNumber());
    std::vector<bool> goes_;
    std::uint64_t records_ = 0;
    std::uint64_t selected_ = 0;
};

RemoveReport RemovePipeline::run(const Selection& selection, std::string_view nothing,
                                 const std::string& success) {
    Command command(vault_, context_);
    RemoveReport report;
    report.cancelled = !command.select(selection);
    if (report.cancelled) return report;
    if (command.selected() == 0) {
        report.text = nothing;
        return report;
    }
    if (!confirm_(command.selected())) return report;
    report = command.remove();
    report.text = fileCount(report.removed) + success;
    return report;
}

RemoveReport RemovePipeline::removeFiles(const std::vector<std::string>& paths) {
    const base::PathRules& rules = vault_.platform.paths;
    std::unordered_set<std::string> wanted;
    for (const std::string& path : paths)
        wanted.insert(rules.comparisonKey(path));
    const auto selection = [&](std::string_view line, platform::Progress&) {
        return wanted.contains(rules.comparisonKey(pathOfLine(line))) ? Verdict::Goes : Verdict::Stays;
    };
    return run(selection, kNothingRemoved, " successfuly removed from the database.");
}

RemoveReport RemovePipeline::removeAll() {
    const OwnStatus status(vault_.platform.ui, "Removing Files...");
    const auto selection = [](std::string_view, platform::Progress&) { return Verdict::Goes; };
    return run(selection, "There are no files in the database to remove.",
               " successfully removed from the database.");
}

RemoveReport RemovePipeline::removeMatching(const std::string& location, const Criteria& criteria) {
    platform::Platform& system = vault_.platform;
    const std::size_t width = crypto::digestKind(context_.digest()).width;
    ContentTest content(criteria, system.paths);
    const auto selection = [&](std::string_view line, platform::Progress& progress) {
        const auto record = FileRecord::parse(line, width);
        if (!record) return Verdict::Stays;
        if (location != kAnyLocation && !system.paths.beginsWith(record->path, location))
            return Verdict::Stays;
        if (!passesWithoutContent(criteria, Candidate::of(*record), system.paths, system.clock))
            return Verdict::Stays;
        if (!criteria.readsContent()) return Verdict::Goes;
        progress.item({record->path});
        try {
            const auto result = content.test(record->path, system.files, progress);
            if (result == ContentTest::Result::Cancelled) return Verdict::Cancelled;
            return result == ContentTest::Result::Passes ? Verdict::Goes : Verdict::Stays;
        } catch (const base::FileFailure&) {
            return Verdict::Stays;  // what cannot be read is not known to pass
        }
    };
    const std::string where = location == kAnyLocation ? "" : " located in " + location;
    return run(selection, kNothingRemoved, where + " successfuly removed from the database.");
}

std::string removeQuestion(std::uint64_t count, const std::string& database) {
    return std::to_string(count) + (count > 1 ? " files" : " file") + " will be removed from " + database +
           ", with the backups kept of them. Go on?";
}

}  // namespace corvalence::files
