#include "files/add_pipeline.h"

#include "base/record_text.h"
#include "files/backup_room.h"
#include "files/file_record.h"
#include "files/own_files.h"
#include "store/database_saving.h"

namespace corvalence::files {

namespace {

constexpr std::size_t kWriteBuffer = 256 * 1024;

std::string fileCount(std::uint64_t count) {
    return std::to_string(count) + (count > 1 ? " Files" : " File");
}

/// A name that holds a line break must not write lines of its own into a message.
std::string onOneLine(const std::string& path) {
    std::string text;
    for (const char c : path) {
        if (c == '\n') {
            text += "\\n";
        } else if (c == '\r') {
            text += "\\r";
        } else {
            text += c;
        }
    }
    return text;
}

/// The listed paths as they are compared; the reader is then behind the last record.
std::unordered_set<std::string> listedKeys(RecordReader& reader, const base::PathRules& paths) {
    std::unordered_set<std::string> keys;
    for (std::string_view line; reader.next(line);)
        keys.insert(paths.comparisonKey(pathOfLine(line)));
    return keys;
}

bool makesBackups(const store::Vault& vault, const AddOptions& options) {
    return options.backups == AddBackups::Configured ? vault.configuration.isOn(settings::key::kBackupFiles)
                                                     : options.backups != AddBackups::None;
}

}  // namespace

std::string addReportText(std::uint64_t added, std::uint64_t listed, const std::string& location) {
    const std::string where = location == "*" ? "" : " located in " + location;
    if (added > 0) {
        std::string text = fileCount(added) + where + " successfully added to the database.";
        if (listed > 0) text += "\n\n" + fileCount(listed) + " listed previously.";
        return text;
    }
    if (listed > 0) return "All files" + where + " were previously listed.";
    return location + " contains only empty folders.";
}

/// One add command from the working copy to the sealed database.
class AddPipeline::Command {
  public:
    Command(store::Vault& vault, store::OpenDatabaseContext& context, const AddOptions& options,
            platform::Progress& progress, std::uint64_t totalBytes)
        : vault_(vault),
          context_(context),
          options_(options),
          progress_(progress),
          bytes_(progress, totalBytes),
          copy_(vault, context),
          digester_(context.digest()) {
        readListed();
        if (makesBackups(vault_, options_)) {
            const bool isSealed = options_.backups == AddBackups::Configured
                                      ? vault_.configuration.encryptsBackups()
                                      : options_.backups == AddBackups::Sealed;
            appender_ = std::make_unique<BackupAppender>(vault_, context_, isSealed);
        }
        // What would be changed at the next check; noted behind the container, which may just have been made.
        own_.emplace(OwnFiles::ofDatabase(vault_, context_));
    }

    /// Adds the files, seals everything and gives the report without its text. `named`: the user gave each by
    /// its name.
    AddReport run(const std::vector<std::string>& paths, bool named) {
        std::uint64_t remaining = paths.size();
        for (const std::string& path : paths) {
            progress_.item({path, --remaining});
            if (!add(path, named)) break;
        }
        return finish();
    }

  private:
    /// False once the user has cancelled.
    bool add(const std::string& path, bool named) {
        if (progress_.cancelled()) return cancel();
        const std::string key = vault_.platform.paths.comparisonKey(path);
        if (own_->hasKey(key)) return refuseOwn(path, named);
        if (listed_.contains(key)) {
            ++report_.listed;
            if (options_.notifyListed) message(platform::Icon::Information, path + " previously listed.");
            return true;
        }
        if (!base::isRecordPath(path)) {
            refuse(path, base::Cause::BadPath);
            return true;
        }
        return addNew(path, key, named);
    }

    AddReport finish() {
        if (report_.cancelled && report_.added > 0) {
            report_.kept = vault_.platform.ui.ask(
                platform::Icon::Information,
                "Would you like to keep the files added before you pressed Cancel?", true);
        }
        // The list of backups keeps what the container holds in either case; a path's later entry comes
        // first.
        if (appender_ && report_.added > 0) appender_->commit();
        appender_.reset();
        if (report_.kept && report_.added > 0) {
            flushLines();
            save();
        } else if (!report_.kept) {
            report_.added = 0;
        }
        copy_.discard();
        if (!report_.cancelled) bytes_.finish();
        return std::move(report_);
    }

    void readListed() {
        RecordReader reader = copy_.records();
        listed_ = listedKeys(reader, vault_.platform.paths);
        // What the last sealed block left behind the last record must not come before the next one.
        copy_.file().resize(reader.offset());
        copy_.file().seek(reader.offset());
    }

    bool refuseOwn(const std::string& path, bool named) {
        if (named) {
            refuse(path, base::Cause::AccessDenied);
        } else {
            ++report_.ownFiles;
        }
        return true;
    }

    bool addNew(const std::string& path, const std::string& key, bool named) {
        std::optional<DigestedFile> file;
        platform::FileStatus status;
        bool begun = false;
        try {
            const auto source = vault_.platform.files.openShared(path);
            status = source->status();
            if (named) progress_.item({path, 0, platform::WorkItem::Kind::File, status.size});
            if (own_->has(status.identity)) return refuseOwn(path, named);
            if (appender_) appender_->begin();
            begun = true;
            file = digester_.digest(*source, bytes_, sink());
        } catch (const base::FileFailure& failure) {
            if (failure.path() != path) throw;  // the container's own failure ends the command
            if (begun && appender_) appender_->drop();
            refuse(path, failure.cause());
            return true;
        }
        if (!file) {
            if (appender_) appender_->drop();
            return cancel();
        }
        if (appender_) appender_->end(path, file->bytes);
        lines_ += FileRecord::of(path, file->digest, status).render();
        if (lines_.size() >= kWriteBuffer) flushLines();
        listed_.insert(key);
        ++report_.added;
        return true;
    }

    FileDigester::Sink sink() {
        if (!appender_) return {};
        return [this](base::ByteView bytes) { appender_->write(bytes); };
    }

    bool cancel() {
        report_.cancelled = true;
        return false;
    }

    void refuse(const std::string& path, base::Cause cause) {
        ++report_.failed;
        if (!options_.notifyFailed) return;
        message(platform::Icon::Warning,
                "Couldn't add " + onOneLine(path) + "\nReason: " + std::string(base::reasonText(cause)));
    }

    void message(platform::Icon icon, const std::string& text) { vault_.platform.ui.message(icon, text); }

    void flushLines() {
        copy_.file().write(base::bytesOf(lines_));
        lines_.clear();
    }

    void save() {
        copy_.file().seek(0);
        store::saveDatabase(vault_, context_, [this](crypto::SealWriter& writer) {
            base::PageBuffer block(kWriteBuffer);
            while (const std::size_t count = copy_.file().read(block.bytes())) {
                writer.write(block.bytes().first(count));
            }
        });
    }

    store::Vault& vault_;
    store::OpenDatabaseContext& context_;
    const AddOptions& options_;
    platform::Progress& progress_;
    ByteProgress bytes_;
    DatabaseCopy copy_;
    FileDigester digester_;
    std::unique_ptr<BackupAppender> appender_;
    std::unordered_set<std::string> listed_;
    std::optional<OwnFiles> own_;
    std::string lines_;  // records on their way into the working copy
    AddReport report_;
};

AddReport AddPipeline::addFiles(const std::vector<std::string>& paths, const AddOptions& options) {
    std::uint64_t total = 0;
    for (const std::string& path : paths) {
        if (const auto status = vault_.platform.files.status(path, platform::Follow::Yes))
            total += status->size;
    }
    const auto progress = openProgress(paths.size());
    AddReport report = Command(vault_, context_, options, *progress, total).run(paths, true);
    if (report.added > 0 || report.listed > 0) report.text = addReportText(report.added, report.listed, "*");
    return report;
}

bool AddPipeline::hasRoom(const AddScan& scan, const AddOptions& options) const {
    const BackupRoom room =
        makesBackups(vault_, options) ? backupRoom(vault_, scan.bytes) : BackupRoom::Enough;
    if (room == BackupRoom::Enough) return true;
    vault_.platform.ui.message(platform::Icon::Stop, std::string(refusalText(room)));
    return false;
}

AddReport AddPipeline::addLocation(const std::string& location, const Criteria& criteria,
                                   const AddOptions& options) {
    AddReport report;
    if (const std::string text = locationRefusal(vault_.platform, location); !text.empty()) {
        vault_.platform.ui.message(platform::Icon::Stop, text);
        report.refused = true;
        return report;
    }
    AddScan scan = search(location, criteria, options);
    report.cancelled = scan.cancelled;
    if (!scan.cancelled && !scan.paths.empty()) {
        report.refused = !hasRoom(scan, options);
        report.declined = !options.proceed({scan.paths.size(), scan.bytes, !report.refused});
        if (!report.refused && !report.declined) {
            const auto progress = openProgress(scan.paths.size());
            report = Command(vault_, context_, options, *progress, scan.bytes).run(scan.paths, false);
        }
    }
    report.listed += scan.listed;
    report.passedOver = std::move(scan.passedOver);
    // "Only empty folders" would not be true of a walk that did not come to its end.
    const bool isWhole = !report.cancelled && !report.refused && !report.declined;
    if (isWhole || report.added > 0) report.text = addReportText(report.added, report.listed, location);
    return report;
}

AddReport AddPipeline::addFound(AddScan scan, const AddOptions& options, platform::Progress& progress) {
    AddReport report = Command(vault_, context_, options, progress, scan.bytes).run(scan.paths, false);
    report.passedOver = std::move(scan.passedOver);
    report.text = addReportText(report.added, report.listed, std::string(kAnyLocation));
    return report;
}

std::unique_ptr<platform::Progress> AddPipeline::openProgress(std::size_t files) const {
    return vault_.platform.ui.openProgress((files == 1 ? "Adding file to: " : "Adding files to: ") +
                                           context_.path());
}

AddScan AddPipeline::search(const std::string& location, const Criteria& criteria,
                            const AddOptions& options) {
    std::unordered_set<std::string> listed;
    {
        // No plain copy stays while the user thinks about what was found.
        DatabaseCopy copy(vault_, context_);
        RecordReader reader = copy.records();
        listed = listedKeys(reader, vault_.platform.paths);
    }
    return scanForFiles(
        vault_, location, {criteria, options.notifyListed, options.notifyFailed, {}, {}},
        [&](const std::string& path) { return listed.contains(vault_.platform.paths.comparisonKey(path)); });
}

}  // namespace corvalence::files
