#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "components/kinds.h"
#include "files/add_pipeline.h"
#include "reports/report_kind.h"

namespace corvalence::components {

// A Complete System database: the five other kinds under one name and one index record. Its components are
// told by the reports that they give, and are made, checked and shown in the order of these.

/// What one component's creation came to.
struct ComponentCreated {
    reports::ReportKind component = reports::ReportKind::FileContents;
    std::vector<Count> counts;
    std::vector<Remark> remarks;
};

struct SystemCreationOptions {
    /// Configured is no choice here and counts as None.
    files::AddBackups backups = files::AddBackups::None;
    bool notifyFailed = false;  // a message for each file that cannot be added
};

struct SystemCreated {
    std::optional<store::OpenDatabaseContext>
        database;  // nothing where it was refused, declined or cancelled
    std::vector<ComponentCreated> components;
    bool cancelled = false;
    /// By the user, when asked whether the files are to be added without backups for lack of room.
    bool declined = false;
};

/// Makes a Complete System database of all files on every drive, or below the folders of the setting Walk
/// Roots, and of the machine's state. Whatever ends it before its end leaves nothing of the database, at the
/// latest after the next start. Throws base::FileFailure.
SystemCreated createCompleteSystem(store::Vault& vault, const Machine& machine,
                                   const store::CreationRequest& request,
                                   const SystemCreationOptions& options);

/// What one component's check came to.
struct ComponentChecked {
    reports::ReportKind component = reports::ReportKind::FileContents;
    CheckOutcome outcome;
};

struct SystemChecked {
    std::vector<ComponentChecked> components;
    bool cancelled = false;  // no report of any component is left then

    /// The page that is shown first: that of the first component checked, from 1; 0 where none was.
    std::size_t firstPage() const noexcept;
    bool differs() const noexcept;
    bool isWhole() const noexcept;
};

/// Checks the selected components of an open Complete System database, each to its own report; the reports of
/// the others stay as they are. Throws what ComponentCheck::compare() does.
SystemChecked checkCompleteSystem(store::Vault& vault, const Machine& machine,
                                  const store::OpenDatabaseContext& database,
                                  std::span<const reports::ReportKind> selected);

/// To be told once a check is over, before its reports are shown.
inline constexpr std::string_view kReportsMade =
    "Corvalence has created a report for each component of the complete system database check.\n\nUse the "
    "arrow buttons on the Pagebar to view each report.";

/// What the listed components hold, those of the machine's state.
std::vector<ComponentCreated> countComponents(store::Vault& vault, const store::IndexRecord& database);

/// "Page: 2 of 5": of the report of a Complete System, one page a component.
std::string systemPageCaption(std::size_t page);

/// Whether sizes in all, in bytes, are too much for backups of the files: the question that is asked then, or
/// nothing. Only sums above files::kFatLimit are looked at.
std::string backupQuestion(std::uint64_t bytes, std::uint64_t free, bool isFat);

}  // namespace corvalence::components
