#include "cli/session.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/password_prompt.h"
#include "components/kinds.h"
#include "core/installation.h"
#include "files/database_copy.h"
#include "store/database_opening.h"
#include "store/recent_list.h"

namespace corvalence::cli {

namespace {

constexpr std::array<std::pair<store::DatabaseKind, std::string_view>, 5> kKinds = {{
    {store::DatabaseKind::Numbered, "file-contents"},
    {store::DatabaseKind::DirectoryStructure, "directory-structure"},
    {store::DatabaseKind::Permissions, "permissions"},
    {store::DatabaseKind::Registry, "registry"},
    {store::DatabaseKind::Services, "services"},
}};

[[noreturn]] void endWith(Context& context, core::StartResult result) {
    switch (result) {
        case core::StartResult::Cancelled:
            throw CommandEnd(ExitCode::Cancelled);
        case core::StartResult::AlreadyRunning:
            // Told as information, which --quiet keeps back; why a command did nothing is more than that.
            throw CommandEnd(ExitCode::Refused,
                             context.options.quiet ? "Corvalence is already running." : "");
        default:
            break;
    }
    const bool isCancelled = context.platform.process.cancelRequested();
    throw CommandEnd(isCancelled ? ExitCode::Cancelled : ExitCode::Refused);
}

std::string joined(const std::vector<store::IndexRecord>& records) {
    std::string text;
    for (const store::IndexRecord& record : records)
        text += "\n  " + record.path;
    return text;
}

}  // namespace

void refuseMovedInstallation(Context& context) {
    if (!context.options.home || core::isInstalledIn(context.platform, context.dataRoot)) return;
    const std::string made = settings::Configuration(context.platform.settings, context.ui)
                                 .folder(settings::key::kInstallDirectory);
    std::string text =
        context.dataRoot + " holds an installation that was copied or moved from " + made +
        ". Its databases are sealed for that place and open nowhere else. Nothing was changed.\n";
    if (context.platform.files.status(made, platform::Follow::Yes)) {
        text += "Work on the one there with:  corvalencectl --home " + made + " COMMAND\n";
    } else {
        text += "Move it back, or let a symbolic link at that place lead here.\n";
    }
    throw CommandEnd(ExitCode::Refused, text + "A new one is made with:  corvalencectl --home DIR init");
}

void requireInstallation(Context& context) {
    if (core::isInstalled(context.platform)) {
        refuseMovedInstallation(context);
        return;
    }
    const std::string home = context.options.home ? " --home " + *context.options.home : "";
    if (context.platform.settings.exists()) {
        throw CommandEnd(
            ExitCode::Refused,
            "The settings cannot be read, or name no installation. If the installation was never "
            "finished, finish it with:  corvalencectl" +
                home + " init");
    }
    throw CommandEnd(ExitCode::Refused,
                     "There is no installation here. Make one with:  corvalencectl" + home + " init");
}

void requireAdministrator(Context& context) {
    const auto result = core::Run::proveAdministrator(context.platform);
    if (result != core::StartResult::Ready) endWith(context, result);
}

std::unique_ptr<platform::InstanceLock> lockInstallation(Context& context, const std::string& root) {
    std::unique_ptr<platform::InstanceLock> lock;
    const auto result = core::Run::lock(context.platform, root, context.options.wait, lock);
    if (result != core::StartResult::Ready) endWith(context, result);
    return lock;
}

std::unique_ptr<core::Run> startRun(Context& context) {
    PasswordPrompt prompt(context);
    return startRun(context, prompt);
}

std::unique_ptr<core::Run> startRun(Context& context, core::PasswordDialog& prompt) {
    requireInstallation(context);
    std::unique_ptr<core::Run> run;
    const auto result = core::Run::start(context.platform, prompt, context.options.wait, run);
    if (result != core::StartResult::Ready) endWith(context, result);
    return run;
}

std::optional<store::IndexRecord> findDatabase(Context& context, core::Run& run,
                                               const std::string& argument) {
    const base::PathRules& paths = context.platform.paths;
    const std::string path = absolutePath(context, argument);
    std::vector<store::IndexRecord> named;
    for (store::IndexRecord& record : store::DatabaseIndex(run.vault()).records()) {
        if (paths.equal(record.path, path)) return std::move(record);
        if (paths.equal(paths.fileName(record.path), argument)) named.push_back(std::move(record));
    }
    if (named.size() == 1) return std::move(named.front());
    if (named.size() > 1) {
        throw CommandEnd(ExitCode::Usage,
                         "Several databases are named " + argument + "; give one's path:" + joined(named));
    }
    if (context.platform.files.status(path, platform::Follow::Yes)) return std::nullopt;
    throw CommandEnd(
        ExitCode::Usage,
        argument + " is not a valid database. All valid databases are shown by:  corvalencectl databases");
}

void noteRecent(core::Run& run, const std::string& path) {
    store::RecentList(run.configuration(), run.vault().session)
        .opened(path, store::DatabaseIndex(run.vault()));
}

store::OpenDatabaseContext openDatabase(Context& context, core::Run& run, const std::string& argument) {
    const auto record = findDatabase(context, run, argument);
    const std::string path = record ? record->path : absolutePath(context, argument);
    std::optional<store::OpenDatabaseContext> database;
    switch (store::DatabaseOpening(run.vault()).openWithRecovery(path, database)) {
        case store::OpenResult::Opened:
        case store::OpenResult::Restored:
            noteRecent(run, path);
            return std::move(*database);
        case store::OpenResult::NotListed:
        case store::OpenResult::Refused:
            throw CommandEnd(context.platform.process.cancelRequested() ? ExitCode::Cancelled
                                                                        : ExitCode::Refused);
        case store::OpenResult::Cancelled:
            break;
    }
    throw CommandEnd(ExitCode::Cancelled);
}

void requireFileDatabase(const store::OpenDatabaseContext& database) {
    if (database.record.kind == store::DatabaseKind::Numbered) return;
    throw CommandEnd(ExitCode::Usage, database.path() + " does not list files.");
}

store::OpenDatabaseContext openFileDatabase(Context& context, core::Run& run, const std::string& argument) {
    auto database = openDatabase(context, run, argument);
    requireFileDatabase(database);
    return database;
}

files::FileRecord findRecord(Context& context, core::Run& run, const store::OpenDatabaseContext& database,
                             const std::string& file) {
    const std::string path = absolutePath(context, file);
    files::DatabaseCopy copy(run.vault(), database);
    files::RecordReader records = copy.records();
    for (std::string_view line; records.next(line);) {
        if (!context.platform.paths.equal(files::pathOfLine(line), path)) continue;
        auto record = files::FileRecord::parse(line, crypto::digestKind(database.digest()).width);
        if (record) return std::move(*record);
    }
    throw CommandEnd(ExitCode::Failed, path + " is not listed in " + database.path() + ".");
}

std::string_view kindName(store::DatabaseKind kind) {
    const auto row =
        std::find_if(kKinds.begin(), kKinds.end(), [kind](const auto& entry) { return entry.first == kind; });
    return row == kKinds.end() ? std::string_view() : row->second;
}

std::optional<store::DatabaseKind> findKind(std::string_view name) {
    for (const auto& [kind, kindName] : kKinds) {
        if (kindName == name) return kind;
    }
    return name == kCompleteSystem ? std::optional(store::DatabaseKind::Numbered) : std::nullopt;
}

std::string kindNames() {
    std::string names;
    for (const auto& row : kKinds)
        names.append(row.second) += ", ";
    return names.append(kCompleteSystem);
}

}  // namespace corvalence::cli
