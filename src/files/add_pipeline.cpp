#include "files/add_pipeline.h"

#include "base/record_text.h"
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
    Command(store::Vault& vault, store::OpenDatabaseContext& context, const AddOptions& options)
        : vault_(vault),
          context_(context),
          options_(options),
          copy_(vault, context),
          digester_(context.digest()) {
        readListed();
    }

    bool isListed(const std::string& path) const {
        return listed_.contains(vault_.platform.paths.comparisonKey(path));
    }

    /// To be called before the first add().
    void begin(std::uint64_t totalBytes) {
        progress_ = vault_.platform.ui.openProgress("Adding files to: " + context_.path());
        bytes_.emplace(*progress_, totalBytes);
        if (vault_.configuration.isOn(settings::key::kBackupFiles)) {
            appender_ =
                std::make_unique<BackupAppender>(vault_, context_, vault_.configuration.encryptsBackups());
        }
        // What would be changed at the next check; noted behind the container, which may just have been made.
        own_.emplace(OwnFiles::ofDatabase(vault_, context_));
    }

    /// False once the user has cancelled.
    bool add(const std::string& path, bool named) {
        progress_->file(path, 0);
        if (progress_->cancelled()) return cancel();
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

    /// Seals everything and gives the report without its text.
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
        if (!report_.cancelled) bytes_->finish();
        return std::move(report_);
    }

  private:
    void readListed() {
        RecordReader reader = copy_.records();
        for (std::string_view line; reader.next(line);) {
            listed_.insert(vault_.platform.paths.comparisonKey(pathOfLine(line)));
        }
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
            if (own_->has(status.identity)) return refuseOwn(path, named);
            if (appender_) appender_->begin();
            begun = true;
            file = digester_.digest(*source, *bytes_, sink());
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
    std::unique_ptr<platform::Progress> progress_;
    std::optional<ByteProgress> bytes_;
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
    Command command(vault_, context_, options);
    command.begin(total);
    for (const std::string& path : paths) {
        if (!command.add(path, true)) break;
    }
    AddReport report = command.finish();
    if (report.added > 0 || report.listed > 0) report.text = addReportText(report.added, report.listed, "*");
    return report;
}

AddReport AddPipeline::addLocation(const std::string& location, const Criteria& criteria,
                                   const AddOptions& options) {
    if (location != kAnyLocation) {
        const auto folder = vault_.platform.files.status(location, platform::Follow::Yes);
        if (!folder || folder->kind != platform::FileKind::Folder) {
            vault_.platform.ui.message(platform::Icon::Stop, location + "  is not a valid location.");
            AddReport refused;
            refused.failed = 1;
            return refused;
        }
    }
    Command command(vault_, context_, options);
    AddScan scan = scanForFiles(vault_, location, {criteria, options.notifyListed, options.notifyFailed},
                                [&](const std::string& path) { return command.isListed(path); });
    AddReport report;
    report.cancelled = scan.cancelled;
    if (!scan.cancelled && !scan.paths.empty()) {
        command.begin(scan.bytes);
        for (const std::string& path : scan.paths) {
            if (!command.add(path, false)) break;
        }
        report = command.finish();
    }
    report.listed += scan.listed;
    report.passedOver = std::move(scan.passedOver);
    // "Only empty folders" would not be true of a walk that did not come to its end.
    if (!report.cancelled || report.added > 0) {
        report.text = addReportText(report.added, report.listed, location);
    }
    return report;
}

}  // namespace corvalence::files
