#pragma once

#include "components/kinds.h"
#include "components/permission_scan.h"
#include "components/sealed_lines.h"

namespace corvalence::components {

/// Records the access lists of all files that a walk over the machine meets; with complete walks those of
/// folders as well.
class PermissionCreation : public ComponentCreation {
  public:
    PermissionCreation(store::Vault& vault, const Machine& machine) : vault_(vault), machine_(machine) {}

    bool fill(const std::string& database, store::NewFiles& files, platform::Progress& progress) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override { return remarks_; }

  private:
    class Visitor;

    store::Vault& vault_;
    const Machine& machine_;
    std::uint64_t records_ = 0;
    std::vector<Remark> remarks_;
};

/// The records of a baseline. Throws files::DatabaseChanged, base::FileFailure.
SealedLines readPermissions(const store::Vault& vault, const BaselineFiles& files,
                            platform::Progress* progress = nullptr);

/// What a database lists.
std::vector<Count> countPermissions(const store::Vault& vault, const BaselineFiles& files);

}  // namespace corvalence::components
