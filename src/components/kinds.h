#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "components/component_check.h"
#include "components/machine.h"
#include "reports/record_renderer.h"
#include "reports/report_kind.h"
#include "store/component_files.h"
#include "store/database_files.h"

namespace corvalence::components {

/// A baseline's files with the digests that they must have, in the order of store::componentFiles().
using BaselineFiles = std::vector<store::SealedFileRecord>;

/// A kind of database that is a baseline of the machine. The one table that fronts, schedule and the Complete
/// System go by.
struct ComponentKind {
    store::DatabaseKind kind;
    reports::ReportKind report;
    std::string_view creationTitle;  // before the database's path
    std::string_view checkTitle;     // likewise
    std::unique_ptr<ComponentCreation> (*makeCreation)(store::Vault& vault, const Machine& machine);
    std::unique_ptr<ComponentCheck> (*makeCheck)(store::Vault& vault, const Machine& machine,
                                                 const std::string& database, BaselineFiles files);
    /// What the database lists.
    std::vector<Count> (*countListed)(const store::Vault& vault, const BaselineFiles& files);
    std::unique_ptr<reports::RecordRenderer> (*makeRenderer)(const base::PathRules& paths);
};

std::span<const ComponentKind> componentKinds() noexcept;
/// Null where the kind is none of the table's.
const ComponentKind* findComponentKind(store::DatabaseKind kind) noexcept;
const ComponentKind* findComponentKind(reports::ReportKind kind) noexcept;

/// For the lines of any report, those of file contents among them.
std::unique_ptr<reports::RecordRenderer> makeRenderer(reports::ReportKind kind,
                                                      const platform::Platform& system);

/// Makes a database of its own. Nothing where it was refused or cancelled; `wasCancelled` tells. Throws
/// base::FileFailure.
std::optional<store::OpenDatabaseContext> createDatabase(store::Vault& vault, const ComponentKind& kind,
                                                         const store::CreationRequest& request,
                                                         ComponentCreation& creation, bool& wasCancelled);

/// The check of one baseline of a listed database, before it is run.
struct BaselineCheck {
    std::string file;  // the first of the baseline
    std::unique_ptr<ComponentCheck> check;
};
BaselineCheck makeBaselineCheck(store::Vault& vault, const Machine& machine, const ComponentKind& kind,
                                store::Form form, const store::IndexRecord& database);

/// Checks an open database of its own against the machine, with a progress of its own. Throws what
/// ComponentCheck::compare() does.
CheckOutcome checkDatabase(store::Vault& vault, const Machine& machine, const ComponentKind& kind,
                           const store::OpenDatabaseContext& database);

}  // namespace corvalence::components
