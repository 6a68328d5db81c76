#include "files/check.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/record_text.h"
#include "files/backup_rewrite.h"
#include "files/file_texts.h"
#include "files/warning_sound.h"
#include "platform/time_text.h"
#include "store/database_index.h"
#include "store/database_saving.h"

namespace corvalence::files {

namespace {

// Collected updates are sealed this often, or more seldom where sealing takes long.
constexpr std::chrono::milliseconds kSaveInterval{5000};
constexpr int kSaveShare = 10;

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
      indexPath_(store::DatabaseIndex(vault).path()) {}

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
    return checkAllFiles(
        *vault_.platform.ui.openProgress("Checking all files in Database: " + context_.path()));
}

CheckSummary FileContentsCheck::checkAllFiles(platform::Progress& progress) {
    platform::Platform& system = vault_.platform;
    const Totals totals = countRecords();
    counts_.listed = totals.records;
    progress_ = &progress;
    ByteProgress bytes(progress, totals.bytes);
    savedAt_ = system.clock.elapsed();
    try {
        walk(totals.records, bytes);
    } catch (const base::FileFailure&) {
        // What was told as updated is saved, or told as lost, on this way out as well.
        if (!saveFailed_) saveUpdates();
        throw;
    }
    compactBackups();
    if (!counts_.cancelled) bytes.finish();
    progress_ = nullptr;
    copy_.discard();
    counts_.checked = judged_ - counts_.unchecked;
    counts_.identical = counts_.checked - counts_.changed;
    const base::FileTime now = system.clock.now();
    store::DatabaseIndex(vault_).stampChecked(context_.path(), now);
    context_.record.lastCheck = now;  // for whoever keeps it open
    return {context_.path(), platform::formatFileTime(system.clock, now), counts_, backupFailure_};
}

void FileContentsCheck::walk(std::uint64_t remaining, ByteProgress& progress) {
    RecordReader reader = copy_.records();
    for (std::string_view line; !counts_.cancelled && reader.next(line); ++line_) {
        progress_->item({pathOfLine(line), --remaining});
        if (checkRecord(line, progress)) ++judged_;
        saveIfDue();
    }
    saveUpdates();
}

bool FileContentsCheck::checkRecord(std::string_view line, ByteProgress& progress) {
    const auto record = FileRecord::parse(line, crypto::digestKind(context_.digest()).width);
    if (!record) {
        tellUnchecked(std::string(pathOfLine(base::withoutLineEnd(line))),
                      base::reasonText(base::Cause::InvalidFile));
        return true;
    }
    // A file that cannot be opened comes to no block at which Cancel would be asked.
    if (progress.cancelled()) {
        counts_.cancelled = true;
        return false;
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
        return true;
    }
    if (!now) {
        counts_.cancelled = true;
        return false;
    }
    if (now->digest != record->digest) handleChanged(*record, now->digest, status);
    return true;
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
    if (dialog_.warnsOfEach()) playWarning(vault_);
    if (dialog_.attended()) {
        vault_.platform.ui.message(platform::Icon::Warning, then.path + " has been changed! ");
    }
    const ChangedFileDetails details = describe(then, digest, now);
    // The message may have been the place where the user has had enough of them.
    const bool isOver = dialog_.attended() && progress_->cancelled();
    const Reaction reaction = isOver ? Reaction::Ignore : dialog_.show(details);
    if (details.onlyIgnore || reaction == Reaction::Ignore) {
        observer_.changed(details, Reaction::Ignore, true, {});
    } else if (reaction == Reaction::Restore) {
        restore(details);
    } else {
        update(details, reaction);
    }
    // Behind the last file there is no other at which a cancel in the place of an answer would be seen.
    if (dialog_.attended() && progress_->cancelled()) counts_.cancelled = true;
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

void FileContentsCheck::restore(const ChangedFileDetails& details) {
    const auto choice = dialog_.showRestore(details.then.path);
    if (!choice) {
        observer_.changed(details, Reaction::Ignore, true, {});
        return;
    }
    const RestoreResult result = restore_.restoreFile(details.then, *choice);
    if (result.cancelled) counts_.cancelled = true;
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
    const bool backsUp = reaction == Reaction::UpdateWithBackup;
    const NewBackup backup = backsUp ? backUp(details) : NewBackup{};
    if (!backup.failure.empty()) {
        if (dialog_.attended()) vault_.platform.ui.message(platform::Icon::Warning, backup.failure);
        observer_.changed(details, reaction, false, backup.failure);
        return;
    }
    copy_.append(details.now.render());
    updated_.resize(line_ + 1);
    updated_[line_] = true;
    if (dialog_.attended()) {
        saveUpdates();
        appender_.reset();
    }
    const bool keepsBackup = backsUp && !backup.made;
    observer_.changed(details, keepsBackup ? Reaction::UpdateKeepBackup : reaction, true, {});
    if (keepsBackup) {
        observer_.note(details.now.path, "No backup was made, as backups of files are turned off.");
    }
}

FileContentsCheck::NewBackup FileContentsCheck::backUp(const ChangedFileDetails& details) {
    const std::string& path = details.now.path;
    if (!appender_) {
        try {
            appender_ =
                std::make_unique<BackupAppender>(vault_, context_, vault_.configuration.encryptsBackups());
        } catch (const base::FileFailure& failure) {
            return {false, failure.what()};
        }
    }
    // Without an old backup there is none to be replaced, and none is wanted.
    if (!vault_.configuration.isOn(settings::key::kBackupFiles) && !appender_->hasEntry(path)) return {};
    if (!firstNewBackup_) firstNewBackup_ = appender_->firstNew();
    ByteProgress silent(*progress_);
    if (auto failure = appender_->add(path, details.now.digest, digester_, silent))
        return {failure->empty(), std::move(*failure)};
    counts_.cancelled = true;
    return {false, "Cancelled."};
}

void FileContentsCheck::saveIfDue() {
    if (saved_ == copy_.appended()) return;
    const auto now = vault_.platform.clock.elapsed();
    if (now - savedAt_ < std::max(kSaveInterval, saveTook_ * kSaveShare)) return;
    saveUpdates();
    savedAt_ = vault_.platform.clock.elapsed();
    saveTook_ = savedAt_ - now;
}

void FileContentsCheck::saveUpdates() {
    if (saved_ == copy_.appended()) return;
    const std::string digestBefore = context_.record.fileDigest;
    try {
        sealUpdates();
    } catch (const base::FileFailure& failure) {
        // What failed may be no more than the copy to the backup database: the records are saved then, and
        // the check goes on.
        if (context_.record.fileDigest != digestBefore) {
            if (backupFailure_.empty()) vault_.platform.ui.message(platform::Icon::Warning, failure.what());
            backupFailure_ = failure.what();
            saved_ = copy_.appended();
            return;
        }
        saveFailed_ = true;
        copy_.readAppended(saved_, [&](std::string_view line) {
            observer_.note(std::string(pathOfLine(line)),
                           std::string("The update was not saved: ").append(failure.reason()));
        });
        throw;
    }
}

void FileContentsCheck::sealUpdates() {
    // First the new backups: a record must never be there without its own.
    if (appender_) {
        appender_->commit();
        restore_.backupsChanged();
    }
    store::saveDatabase(vault_, context_, [this](crypto::SealWriter& writer) {
        RecordReader reader = copy_.records();
        std::size_t number = 0;
        for (std::string_view line; reader.next(line); ++number) {
            if (number >= updated_.size() || !updated_[number]) writer.write(base::bytesOf(line));
        }
        copy_.writeAppended(writer);
    });
    saved_ = copy_.appended();
}

void FileContentsCheck::compactBackups() {
    appender_.reset();
    if (!firstNewBackup_) return;
    try {
        const auto progress = vault_.platform.ui.openProgress("Reconstructing Backup Files");
        const store::BackupPair pair = store::backupPair(vault_.configuration, context_.backupNumber());
        const BackupIndex index(vault_, pair);
        if (index.size() > *firstNewBackup_ &&
            !rewriteBackups(vault_, pair, index, orderWithReplacements(index, *firstNewBackup_), *progress)) {
            counts_.cancelled = true;
            vault_.platform.ui.message(
                platform::Icon::Information,
                "The old backups of updated files still take their room beside the new ones.");
        }
    } catch (const base::FileFailure& failure) {
        // The new backups stand behind the old ones and serve as they are.
        vault_.platform.ui.message(
            platform::Icon::Warning,
            std::string("The old backups of updated files could not be removed.\nReason: ")
                .append(failure.reason()));
    }
    restore_.backupsChanged();
}

}  // namespace corvalence::files
