#pragma once

#include "components/directory_baseline.h"
#include "components/stream_scan.h"

namespace corvalence::components {

/// Records the names of all files, folders and streams that a walk over the machine meets, and what lies in
/// the Recycle Bin.
class DirectoryCreation : public ComponentCreation {
  public:
    DirectoryCreation(store::Vault& vault, const Machine& machine) : vault_(vault), machine_(machine) {}

    bool fill(const std::string& database, store::NewFiles& files, platform::Progress& progress) override;
    std::vector<Count> counts() const override { return totals_.counts(); }
    std::vector<Remark> remarks() const override { return remarks_; }

  private:
    class Visitor;

    void listRecycled(const WalkPlan& plan, store::NewFiles& files, platform::Progress& progress);

    store::Vault& vault_;
    const Machine& machine_;
    DirectoryTotals totals_;
    std::vector<Remark> remarks_;
};

}  // namespace corvalence::components
