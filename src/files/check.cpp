#include "files/check.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/record_text.h"
#include "files/file_texts.h"
#include "platform/time_text.h"
#include "store/database_index.h"
#include "store/database_saving.h"

namespace corvalence::files {

namespace {

// Collected updates are sealed this often, or more seldom where sealing takes long.
constexpr std::chrono::milliseconds kSaveInterval{5000};
constexpr int kSaveShare = 10;

constexpr std::string_view kWarningSounds[] = {"clm", "zaaz", "rml"};
constexpr int kSoundFile = 4;

}  // namespace

FileContentsCheck::FileContentsCheck(store::Vault& vault, store::OpenDatabaseContext& context,
                                     ChangedFileDetailsDialog& dialog, CheckObserver& observer)
    : vault_(vault),
      context_(context),
      dialog_(dialog),
      observer_(observer),
      copy_(vault, context),
      digester_(context.digest()),
      restore_(vault, context),
      indexPath_(store::DatabaseIndex(vault).path()),
      warningSound_(vault.configuration.number(settings::key::kWarningSound)),
      warningFile_(vault.configuration.text(settings::key::kWarningSoundFile)) {}

FileContentsCheck::Totals FileContentsCheck::countRecords() {
    Totals totals;
    RecordReader reader = copy_.records();
    for (std::string_view line; reader.next(line);) {
        ++totals.records;
        const auto fields = base::splitFields(line);
        if (fields.size() > 2) totals.bytes += base::scanWholeUnits(fields[2]).value_or(0);
    }
    return totals;
}

CheckSummary FileContentsCheck::checkAllFiles() {
    platform::Platform& system = vault_.platform;
    const Totals totals = countRecords();
    counts_.listed = totals.records;
    std::uint64_t remaining = totals.records;
    {
        const auto progress = system.ui.openProgress("Checking all files in Database: " + context_.path());
        progress_ = progress.get();
        ByteProgress bytes(*progress, totals.bytes);
        savedAt_ = system.clock.elapsed();
        RecordReader reader = copy_.records();
        for (std::string_view line; !counts_.cancelled && reader.next(line);) {
            progress->file(std::string(pathOfLine(line)), --remaining);
            checkRecord(line, bytes);
            saveIfDue();
        }
        saveUpdates();
        replaceBackups();
        if (!counts_.cancelled) bytes.finish();
        progress_ = nullptr;
    }
    copy_.discard();
    // A check that was cancelled leaves out the record it was at and those behind it.
    const std::uint32_t leftOut = counts_.cancelled ? static_cast<std::uint32_t>(remaining) + 1 : 0;
    counts_.checked = counts_.listed - counts_.unchecked - leftOut;
    counts_.identical = counts_.checked - counts_.changed;
    const base::FileTime now = system.clock.now();
    store::DatabaseIndex(vault_).stampChecked(context_.path(), now);
    return {context_.path(), platform::formatFileTime(system.clock, now), counts_};
}

void FileContentsCheck::checkRecord(std::string_view line, ByteProgress& progress) {
    const auto record = FileRecord::parse(line, crypto::digestKind(context_.digest()).width);
    if (!record) {
        tellUnchecked(std::string(pathOfLine(base::withoutLineEnd(line))),
                      base::reasonText(base::Cause::InvalidFile));
        return;
    }
    // A file that cannot be opened comes to no block at which Cancel would be asked.
    if (progress.cancelled()) {
        counts_.cancelled = true;
        return;
    }
    std::optional<DigestedFile> now;
    platform::FileStatus status;
    try {
        const auto file = vault_.platform.files.openShared(record->path);
        now = digester_.digest(*file, progress);
        // Size, attributes and times are shown of a changed file only.
        if (now && now->digest != record->digest) status = file->status();
    } catch (const base::FileFailure& failure) {
        tellUnchecked(record->path, failure.reason());
        return;
    }
    if (!now) {
        counts_.cancelled = true;
        return;
    }
    if (now->digest != record->digest) handleChanged(*record, now->digest, status);
}

void FileContentsCheck::tellUnchecked(const std::string& path, std::string_view reason) {
    ++counts_.unchecked;
    if (dialog_.attended()) {
        vault_.platform.ui.message(platform::Icon::Warning,
                                   "Couldn't check " + path + "\nReason: " + std::string(reason));
    }
    observer_.unchecked(path, std::string(reason));
}

void FileContentsCheck::handleChanged(const FileRecord& then, const std::string& digest,
                                      const platform::FileStatus& now) {
    ++counts_.changed;
    playWarning();
    if (dialog_.attended()) {
        vault_.platform.ui.message(platform::Icon::Warning, then.path + " has been changed! ");
    }
    const ChangedFileDetails details = describe(then, digest, now);
    const Reaction reaction = dialog_.show(details);
    if (details.onlyIgnore || reaction == Reaction::Ignore) {
        observer_.changed(details, Reaction::Ignore, true, {});
    } else if (reaction == Reaction::Restore) {
        restore(details);
    } else {
        update(details, reaction);
    }
}

ChangedFileDetails FileContentsCheck::describe(const FileRecord& then, const std::string& digest,
                                               const platform::FileStatus& now) {
    platform::Platform& system = vault_.platform;
    ChangedFileDetails details;
    details.then = then;
    details.now = FileRecord::of(then.path, digest, now);
    details.sizeNow = now.size;
    details.type = describeFileType(then.path, system.paths, system.types);
    details.lastChecked =
        context_.record.lastCheck
            ? "Database last checked:   " + platform::formatFileTime(system.clock, *context_.record.lastCheck)
            : "Database unchecked until now.";
    details.digestTruncated = context_.digest() == crypto::DigestCode::Sha512;
    details.onlyIgnore = system.paths.equal(then.path, indexPath_);
    return details;
}

void FileContentsCheck::playWarning() {
    if (warningSound_ == kSoundFile) {
        vault_.platform.sound.playFile(warningFile_);
    } else if (warningSound_ < static_cast<int>(std::size(kWarningSounds))) {
        vault_.platform.sound.playResource(std::string(kWarningSounds[warningSound_]));
    }
}

void FileContentsCheck::restore(const ChangedFileDetails& details) {
    const auto choice = dialog_.showRestore(details.then.path);
    if (!choice) {
        observer_.changed(details, Reaction::Ignore, true, {});
        return;
    }
    const RestoreResult result = restore_.restoreFile(details.then, *choice);
    if (dialog_.attended()) {
        vault_.platform.ui.message(result.restored ? platform::Icon::Information : platform::Icon::Stop,
                                   result.message);
    }
    observer_.changed(details, Reaction::Restore, result.restored, result.message);
    for (const std::string& note : result.notes)
        observer_.note(details.then.path, note);
    if (!result.movedTo.empty())
        observer_.note(details.then.path, "The changed file was moved to " + result.movedTo);
}

void FileContentsCheck::update(const ChangedFileDetails& details, Reaction reaction) {
    updated_.push_back(details.now);
    updatedPaths_.insert(vault_.platform.paths.comparisonKey(details.now.path));
    hasUnsaved_ = true;
    if (reaction == Reaction::UpdateWithBackup)
        replacements_.push_back({details.now.path, details.now.digest});
    if (dialog_.attended()) {
        saveUpdates();
        replaceBackups();
    }
    observer_.changed(details, reaction, true, {});
}

void FileContentsCheck::saveIfDue() {
    if (!hasUnsaved_) return;
    const auto now = vault_.platform.clock.elapsed();
    if (now - savedAt_ < std::max(kSaveInterval, saveTook_ * kSaveShare)) return;
    saveUpdates();
    savedAt_ = vault_.platform.clock.elapsed();
    saveTook_ = savedAt_ - now;
}

bool FileContentsCheck::isUpdated(std::string_view line) const {
    return !updatedPaths_.empty() &&
           updatedPaths_.contains(vault_.platform.paths.comparisonKey(pathOfLine(line)));
}

void FileContentsCheck::saveUpdates() {
    if (!hasUnsaved_) return;
    store::saveDatabase(vault_, context_, [this](crypto::SealWriter& writer) {
        RecordReader reader = copy_.records();
        for (std::string_view line; reader.next(line);) {
            if (!isUpdated(line)) writer.write(base::bytesOf(line));
        }
        for (const FileRecord& record : updated_)
            writer.write(base::bytesOf(record.render()));
    });
    hasUnsaved_ = false;
}

void FileContentsCheck::replaceBackups() {
    if (replacements_.empty()) return;
    const auto progress = vault_.platform.ui.openProgress("Reconstructing Backup Files");
    for (const ReplacementFailure& failure :
         replaceBackupEntries(vault_, context_, replacements_, *progress)) {
        observer_.note(failure.path, "The backup was left as it was: " + failure.reason);
    }
    replacements_.clear();
    restore_.backupsChanged();
}

}  // namespace corvalence::files
