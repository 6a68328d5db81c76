#include "components/complete_system.h"

#include <algorithm>

#include "components/file_component.h"
#include "components/walk_plan.h"
#include "files/backup_room.h"
#include "files/location.h"
#include "reports/report_writer.h"
#include "store/component_files.h"

namespace corvalence::components {

namespace {

constexpr std::string_view kNote =
    "\n\nDo you want to add the files to the database without backing up the files ?\n\nCorvalence will "
    "still "
    "be able to detect any modification of your files.\n\nNOTE: This only applies to this database - File "
    "restoration will be available\nfor any other database that you create [provided you have enough free "
    "disk "
    "space].";
constexpr std::string_view kTooSmall = "You do not have enough free disk space to backup all your files.";
constexpr std::string_view kTooLarge = "Your file system does not support files larger than 4GB.";

/// One creation, component after component.
class Creation {
  public:
    Creation(store::Vault& vault, const Machine& machine, const SystemCreationOptions& options,
             store::UnfinishedDatabase& unfinished)
        : vault_(vault),
          machine_(machine),
          options_(options),
          unfinished_(unfinished),
          path_(unfinished.context().path()) {}

    SystemCreated run() {
        if (addFiles()) fillComponents();
        return std::move(created_);
    }

  private:
    bool addFiles() {
        files::AddScan scan = search();
        if (scan.cancelled) return cancel();
        files::AddOptions add;
        add.notifyFailed = options_.notifyFailed;
        const auto backups = chooseBackups(scan.bytes);
        if (!backups) {
            created_.declined = true;
            return false;
        }
        add.backups = *backups;
        progress_ = vault_.platform.ui.openProgress("Creating Complete System Database: " + path_);
        files::AddReport report =
            files::AddPipeline(vault_, unfinished_.context()).addFound(std::move(scan), add, *progress_);
        if (report.cancelled) return cancel();
        created_.components.push_back(accountOf(report));
        return true;
    }

    files::AddScan search() {
        const WalkPlan plan = planWalk(vault_);
        OwnNames own(vault_);
        files::AddScanOptions options;
        options.notifyFailed = options_.notifyFailed;
        options.roots = platform::WalkRoots{plan.roots, plan.barriers};
        options.leavesOut = [&own](const std::string& path) { return own.hold(path); };
        return files::scanForFiles(vault_, std::string(files::kAnyLocation), options,
                                   [](const std::string&) { return false; });
    }

    /// The user's choice, or none where there is no room and the user agrees to that; nothing otherwise.
    std::optional<files::AddBackups> chooseBackups(std::uint64_t bytes) {
        const bool isWanted =
            options_.backups == files::AddBackups::Plain || options_.backups == files::AddBackups::Sealed;
        if (!isWanted) return files::AddBackups::None;
        const files::BackupDrive drive = files::backupDrive(vault_);
        const std::string question = backupQuestion(bytes, drive.free, drive.isFat);
        if (question.empty()) return options_.backups;
        if (vault_.platform.ui.ask(platform::Icon::Warning, question)) return files::AddBackups::None;
        return std::nullopt;
    }

    static ComponentCreated accountOf(const files::AddReport& report) {
        ComponentCreated account;
        account.counts = {{"files", " files.", report.added}};
        WalkAccount walked;
        walked.passedOver = report.passedOver;
        account.remarks = remarksOf(walked);
        addRemark(account.remarks, {"failed", report.failed, " could not be added.", {}, true});
        addRemark(account.remarks, {"links", report.passedOver.links, " passed over: symbolic links.", {}});
        return account;
    }

    void fillComponents() {
        std::vector<std::unique_ptr<store::NewFiles>> files;
        for (const ComponentKind& kind : componentKinds()) {
            const auto creation = kind.makeCreation(vault_, machine_);
            files.push_back(std::make_unique<store::NewFiles>(
                vault_, store::componentFiles(kind.kind, store::Form::Component, path_)));
            if (!creation->fill(path_, *files.back(), *progress_)) {
                cancel();
                return;
            }
            created_.components.push_back({kind.report, creation->counts(), creation->remarks()});
        }
        unfinished_.complete(files);
        created_.database = unfinished_.context();
    }

    bool cancel() {
        created_.cancelled = true;
        return false;
    }

    store::Vault& vault_;
    const Machine& machine_;
    const SystemCreationOptions& options_;
    store::UnfinishedDatabase& unfinished_;
    const std::string path_;
    std::unique_ptr<platform::Progress> progress_;  // of all components, behind the search
    SystemCreated created_;
};

/// A component that fails must keep neither the others from being checked nor an older report in its place.
CheckOutcome failedOutcome(const std::string& path, std::string_view reason) {
    CheckOutcome outcome;
    outcome.remarks.push_back(
        {"failed", 1, " component could not be checked.", {{path, std::string(reason)}}, true});
    return outcome;
}

CheckOutcome checkOne(store::Vault& vault, const Machine& machine, const store::OpenDatabaseContext& database,
                      reports::ReportKind component, platform::Progress& progress) {
    const ComponentKind* kind = findComponentKind(component);
    if (kind == nullptr) {
        FileComponentCheck check(vault, database);
        return runCheck(vault, database, database.path(), component, check, progress);
    }
    const auto baseline = makeBaselineCheck(vault, machine, *kind, store::Form::Component, database.record);
    return runCheck(vault, database, baseline.file, component, *baseline.check, progress);
}

CheckOutcome checkGuarded(store::Vault& vault, const Machine& machine,
                          const store::OpenDatabaseContext& database, reports::ReportKind component,
                          platform::Progress& progress) {
    reports::removeReport(vault, component);
    try {
        return checkOne(vault, machine, database, component, progress);
    } catch (const files::DatabaseChanged& changed) {
        return failedOutcome(database.path(), changed.what());
    } catch (const base::FileFailure& failure) {
        return failedOutcome(failure.path(), failure.what());
    }
}

}  // namespace

std::string backupQuestion(std::uint64_t bytes, std::uint64_t free, bool isFat) {
    if (bytes <= files::kFatLimit || (!isFat && bytes <= free)) return {};
    return std::string(isFat ? kTooLarge : kTooSmall).append(kNote);
}

SystemCreated createCompleteSystem(store::Vault& vault, const Machine& machine,
                                   const store::CreationRequest& request,
                                   const SystemCreationOptions& options) {
    const auto unfinished = store::DatabaseCreation(vault).begin(request);
    if (!unfinished) return {};
    return Creation(vault, machine, options, *unfinished).run();
}

std::size_t SystemChecked::firstPage() const noexcept {
    return components.empty() ? 0 : static_cast<std::size_t>(components.front().component) + 1;
}

bool SystemChecked::differs() const noexcept {
    return std::any_of(components.begin(), components.end(),
                       [](const ComponentChecked& checked) { return checked.outcome.differs(); });
}

bool SystemChecked::isWhole() const noexcept {
    return std::all_of(components.begin(), components.end(),
                       [](const ComponentChecked& checked) { return checked.outcome.isWhole(); });
}

SystemChecked checkCompleteSystem(store::Vault& vault, const Machine& machine,
                                  const store::OpenDatabaseContext& database,
                                  std::span<const reports::ReportKind> selected) {
    const auto progress =
        vault.platform.ui.openProgress("Checking Complete System Database: " + database.path());
    SystemChecked result;
    for (const reports::ReportRow& row : reports::reportRows()) {
        if (std::find(selected.begin(), selected.end(), row.kind) == selected.end()) continue;
        result.components.push_back({row.kind, checkGuarded(vault, machine, database, row.kind, *progress)});
        if (!result.components.back().outcome.cancelled) continue;
        result.cancelled = true;
        reports::removeReports(vault);
        return result;
    }
    return result;
}

std::vector<ComponentCreated> countComponents(store::Vault& vault, const store::IndexRecord& database) {
    std::vector<ComponentCreated> counted;
    for (const ComponentKind& kind : componentKinds()) {
        const auto files = store::componentRecords(vault, kind.kind, store::Form::Component, database);
        counted.push_back({kind.report, kind.countListed(vault, files), {}});
    }
    return counted;
}

std::string systemPageCaption(std::size_t page) {
    return "Page: " + std::to_string(page) + " of " + std::to_string(reports::reportRows().size());
}

}  // namespace corvalence::components
