#pragma once

#include <optional>

#include "components/component_check.h"
#include "components/file_report.h"
#include "files/check.h"

namespace corvalence::components {

/// The check of listed files without a user: nothing is asked and no record changes, what differs goes to the
/// report of file contents.
class FileComponentCheck : public ComponentCheck {
  public:
    FileComponentCheck(store::Vault& vault, const store::OpenDatabaseContext& database)
        : vault_(vault), database_(database) {}

    bool compare(platform::Progress& progress, reports::ReportSink& report) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override;

  private:
    files::CheckCounts checked() const;

    store::Vault& vault_;
    store::OpenDatabaseContext database_;
    files::FixedReaction ignores_{files::Reaction::Ignore, files::RestoreChoice::MoveChangedFile};
    std::optional<FileReport> findings_;
    std::optional<files::FileContentsCheck> check_;
};

}  // namespace corvalence::components
