#pragma once

#include "components/kinds.h"
#include "components/permission_scan.h"
#include "components/sealed_lines.h"

namespace corvalence::components {

/// Compares each record of the baseline with the access list that its file has now. Walks nothing: what is
/// new is not looked at, and what is gone is counted as unchecked.
class PermissionCheck : public ComponentCheck {
  public:
    PermissionCheck(store::Vault& vault, const Machine& machine, const std::string& database,
                    BaselineFiles files);

    bool compare(platform::Progress& progress, reports::ReportSink& report) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override;

  private:
    void compareRecord(std::string_view before, reports::ReportSink& report);

    store::Vault& vault_;
    BaselineFiles baseline_;
    bool isComplete_;
    PermissionScan scan_;
    SealedLines lines_;
    std::string now_;

    std::uint64_t checked_ = 0;
    std::uint64_t changed_ = 0;
    NotedPaths unchecked_;
    NotedPaths passedOver_;
};

}  // namespace corvalence::components
