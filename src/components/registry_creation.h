#pragma once

#include "components/kinds.h"
#include "components/registry_walk.h"
#include "components/sealed_lines.h"

namespace corvalence::components {

/// Records every value of the registry.
class RegistryCreation : public ComponentCreation {
  public:
    RegistryCreation(store::Vault& vault, const Machine& machine) : vault_(vault), machine_(machine) {}

    bool fill(const std::string& database, store::NewFiles& files, platform::Progress& progress) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override { return remarks_; }

  private:
    store::Vault& vault_;
    const Machine& machine_;
    std::uint64_t values_ = 0;
    std::vector<Remark> remarks_;
};

/// The records of a registry database, each with the lines that go on with it.
SealedLines readRegistry(const store::Vault& vault, const BaselineFiles& files,
                         platform::Progress* progress = nullptr);

/// What a database lists.
std::vector<Count> countRegistry(const store::Vault& vault, const BaselineFiles& files);

}  // namespace corvalence::components
