#pragma once

#include "components/kinds.h"
#include "components/service_record.h"

namespace corvalence::components {

/// The records of all services of the machine, as creation and check take them.
struct LiveServices {
    std::vector<std::string> records;  // in the order of the manager
    std::uint64_t refused = 0;         // longer than a line may be
    std::string failure;               // why the manager gave none; empty where it did

    /// Tells what could not be listed, among other remarks.
    void addRemarks(std::vector<Remark>& remarks) const;
};

/// Nothing where the user cancelled.
std::optional<LiveServices> listServices(platform::ServiceManager& manager, platform::Progress& progress);

/// Records every service of the machine.
class ServiceCreation : public ComponentCreation {
  public:
    ServiceCreation(store::Vault&, const Machine& machine) : machine_(machine) {}

    bool fill(const std::string& database, store::NewFiles& files, platform::Progress& progress) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override;

  private:
    const Machine& machine_;
    LiveServices live_;
};

/// What a database lists.
std::vector<Count> countServices(const store::Vault& vault, const BaselineFiles& files);

}  // namespace corvalence::components
