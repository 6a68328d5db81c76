#include "components/kinds.h"

#include <array>

#include "components/directory_baseline.h"
#include "components/directory_check.h"
#include "components/directory_creation.h"
#include "components/directory_report.h"
#include "components/file_report.h"
#include "components/permission_check.h"
#include "components/permission_creation.h"
#include "components/permission_report.h"
#include "components/registry_check.h"
#include "components/registry_creation.h"
#include "components/registry_report.h"
#include "components/service_check.h"
#include "components/service_creation.h"
#include "components/service_report.h"

namespace corvalence::components {

namespace {

template <typename Creation>
std::unique_ptr<ComponentCreation> makeCreation(store::Vault& vault, const Machine& machine) {
    return std::make_unique<Creation>(vault, machine);
}

template <typename Check>
std::unique_ptr<ComponentCheck> makeCheck(store::Vault& vault, const Machine& machine,
                                          const std::string& database, BaselineFiles files) {
    return std::make_unique<Check>(vault, machine, database, std::move(files));
}

template <typename Renderer>
std::unique_ptr<reports::RecordRenderer> makeRenderer(const base::PathRules& paths) {
    return std::make_unique<Renderer>(paths);
}

/// Shows the creation of a database of its own.
class ShownCreation : public store::CreationWorker {
  public:
    ShownCreation(platform::UserInterface& ui, std::string_view title, ComponentCreation& inner)
        : ui_(ui), title_(title), inner_(inner) {}

    bool fill(const std::string& database, store::NewFiles& files) override {
        const auto progress = ui_.openProgress(std::string(title_).append(database));
        wasCancelled = !inner_.fill(database, files, *progress);
        return !wasCancelled;
    }

    bool wasCancelled = false;

  private:
    platform::UserInterface& ui_;
    std::string_view title_;
    ComponentCreation& inner_;
};

constexpr std::array<ComponentKind, 4> kKinds = {{
    {store::DatabaseKind::DirectoryStructure, reports::ReportKind::DirectoryStructure,
     "Creating new directory structure database: ", "Checking directory structure database: ",
     makeCreation<DirectoryCreation>, makeCheck<DirectoryCheck>, countDirectories,
     makeRenderer<DirectoryRenderer>},
    {store::DatabaseKind::Permissions, reports::ReportKind::Permissions,
     "Creating new permissions database: ", "Checking All Files In Permissions Database: ",
     makeCreation<PermissionCreation>, makeCheck<PermissionCheck>, countPermissions,
     makeRenderer<PermissionRenderer>},
    {store::DatabaseKind::Registry, reports::ReportKind::Registry,
     "Creating New Registry Structure Database: ", "Checking Registry Database: ",
     makeCreation<RegistryCreation>, makeCheck<RegistryCheck>, countRegistry, makeRenderer<RegistryRenderer>},
    {store::DatabaseKind::Services, reports::ReportKind::Services, "Creating new services database: ",
     "Checking All Services In Services Database: ", makeCreation<ServiceCreation>, makeCheck<ServiceCheck>,
     countServices, makeRenderer<ServiceRenderer>},
}};

}  // namespace

std::span<const ComponentKind> componentKinds() noexcept {
    return kKinds;
}

const ComponentKind* findComponentKind(store::DatabaseKind kind) noexcept {
    for (const ComponentKind& row : kKinds) {
        if (row.kind == kind) return &row;
    }
    return nullptr;
}

const ComponentKind* findComponentKind(reports::ReportKind kind) noexcept {
    for (const ComponentKind& row : kKinds) {
        if (row.report == kind) return &row;
    }
    return nullptr;
}

std::unique_ptr<reports::RecordRenderer> makeRenderer(reports::ReportKind kind,
                                                      const platform::Platform& system) {
    if (const ComponentKind* row = findComponentKind(kind)) return row->makeRenderer(system.paths);
    return std::make_unique<FileRenderer>(system);
}

std::optional<store::OpenDatabaseContext> createDatabase(store::Vault& vault, const ComponentKind& kind,
                                                         const store::CreationRequest& request,
                                                         ComponentCreation& creation, bool& wasCancelled) {
    ShownCreation worker(vault.platform.ui, kind.creationTitle, creation);
    auto database = store::DatabaseCreation(vault).create(request, worker);
    wasCancelled = worker.wasCancelled;
    return database;
}

BaselineCheck makeBaselineCheck(store::Vault& vault, const Machine& machine, const ComponentKind& kind,
                                store::Form form, const store::IndexRecord& database) {
    auto files = store::componentRecords(vault, kind.kind, form, database);
    std::string first = files.front().path;
    return {std::move(first), kind.makeCheck(vault, machine, database.path, std::move(files))};
}

CheckOutcome checkDatabase(store::Vault& vault, const Machine& machine, const ComponentKind& kind,
                           const store::OpenDatabaseContext& database) {
    const auto progress =
        vault.platform.ui.openProgress(std::string(kind.checkTitle).append(database.path()));
    const auto baseline = makeBaselineCheck(vault, machine, kind, store::Form::Standalone, database.record);
    return runCheck(vault, database, baseline.file, kind.report, *baseline.check, *progress);
}

}  // namespace corvalence::components
