#pragma once

#include <unordered_map>

#include "components/sealed_lines.h"
#include "components/service_creation.h"

namespace corvalence::components {

/// Compares the services of the machine with the lines of the baseline, in the manager's order. Records are
/// compared as long as both orders run together; where one is displaced, that service and those behind it are
/// only looked for. With complete walks each record is compared with that of its name, wherever it stands.
class ServiceCheck : public ComponentCheck {
  public:
    ServiceCheck(store::Vault& vault, const Machine& machine, const std::string& database,
                 BaselineFiles files);

    bool compare(platform::Progress& progress, reports::ReportSink& report) override;
    std::vector<Count> counts() const override;
    std::vector<Remark> remarks() const override;

  private:
    void compareInStep(std::string_view live);
    void compareByName(std::string_view live);
    void displaced(std::string_view live, std::string_view name);
    void findRemoved(platform::Progress& progress);
    void add(std::string_view record, std::string_view code);
    void change(std::string_view before, std::string_view now);

    store::Vault& vault_;
    const Machine& machine_;
    BaselineFiles baseline_;
    bool isComplete_;

    SealedLines lines_;
    LiveServices live_;
    std::unordered_map<std::string_view, std::size_t> last_;  // by name the last line that bears it
    std::size_t next_ = 0;
    reports::ReportSink* report_ = nullptr;

    std::uint64_t changed_ = 0;
    std::uint64_t added_ = 0;
    std::uint64_t removed_ = 0;
    std::uint64_t behindEnd_ = 0;
    std::uint64_t byName_ = 0;             // services that were only looked for
    std::vector<std::string> unreported_;  // those of them that differ all the same
};

}  // namespace corvalence::components
