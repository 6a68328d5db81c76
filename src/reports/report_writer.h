#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "crypto/sealed_stream.h"
#include "crypto/working_files.h"
#include "reports/report_kind.h"
#include "store/vault.h"

namespace corvalence::reports {

/// Where the report of the last check of a kind lies.
std::string reportPath(const settings::Configuration& configuration, ReportKind kind);

/// Removes the report of the last check of a kind, if there is one. Throws base::FileFailure.
void removeReport(const store::Vault& vault, ReportKind kind);
/// Removes the reports of all five kinds, likewise.
void removeReports(const store::Vault& vault);

/// Takes the lines of a report as a check finds them. Throws base::FileFailure.
class ReportSink {
  public:
    virtual ~ReportSink() = default;

    /// Adds a line: each field with the separator behind it.
    void add(std::initializer_list<std::string_view> fields);
    /// Adds a line that is rendered already, without its end.
    virtual void addLine(std::string_view line) = 0;
    /// Whether a line stays however the check ends, as in a log. It is then told once it is certain, if need
    /// be before others that were found earlier, and those of a cancelled check are told as well.
    virtual bool isLasting() const noexcept { return false; }
};

/// The report that a check writes: sealed as it goes, beside the one of the check before, which it replaces
/// once it is kept. Without that it goes, as on Cancel. Throws base::FileFailure.
class ReportWriter : public ReportSink {
  public:
    ReportWriter(store::Vault& vault, ReportKind kind);

    void addLine(std::string_view line) override;

    void keep();

  private:
    std::string path_;
    crypto::TemporaryFile file_;
    crypto::SealWriter writer_;
};

}  // namespace corvalence::reports
