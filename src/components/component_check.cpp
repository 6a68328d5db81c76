#include "components/component_check.h"

#include <algorithm>

#include "store/database_index.h"

namespace corvalence::components {

namespace {

std::string leftOutText(const WalkEnd& end) {
    return std::to_string(end.foldersLeftOut) + " folders and " + std::to_string(end.filesLeftOut) +
           " files in the folders above it were left out";
}

}  // namespace

void addRemark(std::vector<Remark>& remarks, Remark remark) {
    if (remark.count > 0) remarks.push_back(std::move(remark));
}

std::vector<Remark> remarksOf(const WalkAccount& account) {
    std::vector<Remark> remarks;
    Remark refused{"refused", account.refused, " names refused: no record can hold them.", {}, true};
    for (const std::string& path : account.examples)
        refused.details.push_back({path, {}});
    Remark ended{
        "ended", account.ended.size(), " walks ended after ten folders without anything new.", {}, true};
    for (const WalkEnd& end : account.ended)
        ended.details.push_back({end.folder, leftOutText(end)});
    const files::PassedOver& passed = account.passedOver;
    addRemark(remarks, std::move(ended));
    addRemark(remarks, std::move(refused));
    addRemark(remarks,
              {"unreadable", passed.unreadable.size(), " could not be read.", passed.unreadable, true});
    addRemark(remarks,
              {"hidden", passed.hiddenNames, " passed over: names that begin with a full stop.", {}});
    addRemark(remarks,
              {"pseudo_file_systems", passed.pseudoFileSystems, " passed over: pseudo file systems.", {}});
    return remarks;
}

bool CheckOutcome::differs() const noexcept {
    return std::any_of(counts.begin(), counts.end(), [](const Count& count) { return count.count > 0; });
}

bool isWhole(const std::vector<Remark>& remarks) noexcept {
    return std::none_of(remarks.begin(), remarks.end(), [](const Remark& remark) { return remark.isFault; });
}

bool CheckOutcome::isWhole() const noexcept {
    return !isEmpty && components::isWhole(remarks);
}

CheckOutcome compareBaseline(const store::Vault& vault, const std::string& file, ComponentCheck& check,
                             platform::Progress& progress, reports::ReportSink& sink) {
    CheckOutcome outcome;
    const auto status = vault.platform.files.status(file, platform::Follow::Yes);
    outcome.isEmpty = status && status->size == 0;
    if (outcome.isEmpty) return outcome;
    {
        const platform::Watched shown(progress, check);
        outcome.cancelled = !check.compare(progress, sink);
    }
    outcome.counts = check.counts();
    outcome.remarks = check.remarks();
    return outcome;
}

CheckOutcome runCheck(store::Vault& vault, const store::OpenDatabaseContext& database,
                      const std::string& file, reports::ReportKind kind, ComponentCheck& check,
                      platform::Progress& progress) {
    platform::Platform& system = vault.platform;
    reports::ReportWriter report(vault, kind);
    CheckOutcome outcome = compareBaseline(vault, file, check, progress, report);
    if (outcome.isEmpty)
        system.ui.message(platform::Icon::Information, database.path() + " is an empty database.");
    if (outcome.isEmpty || outcome.cancelled) return outcome;
    report.keep();
    store::DatabaseIndex(vault).stampChecked(database.path(), system.clock.now());
    progress.bar(platform::Progress::kSteps);
    system.ui.status(0, "Complete.");
    return outcome;
}

}  // namespace corvalence::components
