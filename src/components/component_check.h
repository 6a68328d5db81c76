#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "components/drive_walk.h"
#include "platform/user_interface.h"
#include "reports/report_writer.h"
#include "store/database_creation.h"
#include "store/open_database.h"
#include "store/vault.h"

namespace corvalence::components {

using platform::Count;

/// What a creation or a check could not record or compare, told beside its results.
struct Remark {
    std::string_view name;  // "refused", for documents
    std::uint64_t count = 0;
    std::string_view text;  // behind the number
    std::vector<files::UnreadableEntry> details;
    /// Whether it means that the result is not whole; otherwise it is for information.
    bool isFault = false;
};

/// What a walk went past; only what there is.
std::vector<Remark> remarksOf(const WalkAccount& account);

/// Adds a remark if its count is not 0.
void addRemark(std::vector<Remark>& remarks, Remark remark);

/// Creates the baseline of one kind.
class ComponentCreation {
  public:
    virtual ~ComponentCreation() = default;
    /// Writes the lines of the kind's files, in the order of store::componentFiles(), for the database at
    /// this path. False where the user cancelled. Throws base::FileFailure.
    virtual bool fill(const std::string& database, store::NewFiles& files, platform::Progress& progress) = 0;
    /// What was recorded, after fill().
    virtual std::vector<Count> counts() const = 0;
    virtual std::vector<Remark> remarks() const = 0;
};

/// Compares the baseline of one kind with the machine.
class ComponentCheck : public platform::Counting {
  public:
    /// Writes what differs to the report, in the kind's order. False where the user cancelled. Throws
    /// base::FileFailure, files::DatabaseChanged.
    virtual bool compare(platform::Progress& progress, reports::ReportSink& report) = 0;
    /// Of all kinds of difference, also while compare() goes on.
    std::vector<Count> counts() const override = 0;
    virtual std::vector<Remark> remarks() const = 0;
};

/// Whether none of them is a fault.
bool isWhole(const std::vector<Remark>& remarks) noexcept;

struct CheckOutcome {
    std::vector<Count> counts;
    std::vector<Remark> remarks;
    bool cancelled = false;
    /// The database holds nothing, and nothing was compared; told to the user.
    bool isEmpty = false;

    bool differs() const noexcept;
    /// Whether everything was compared.
    bool isWhole() const noexcept;
};

/// Compares a baseline with the machine and tells its differences to `sink`. `file`: the first file of the
/// baseline; where that is empty nothing is compared. Throws what compare() does.
CheckOutcome compareBaseline(const store::Vault& vault, const std::string& file, ComponentCheck& check,
                             platform::Progress& progress, reports::ReportSink& sink);

/// One check from its beginning to its report: an empty database is told, a cancelled check leaves the report
/// of the check before, any other replaces it and stamps the database as checked. `file`: the first file of
/// the baseline. Throws what compare() does.
CheckOutcome runCheck(store::Vault& vault, const store::OpenDatabaseContext& database,
                      const std::string& file, reports::ReportKind kind, ComponentCheck& check,
                      platform::Progress& progress);

}  // namespace corvalence::components
