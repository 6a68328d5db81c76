#pragma once

#include <optional>

#include "components/registry_creation.h"
#include "components/registry_findings.h"

namespace corvalence::components {

/// Walks the registry as the creation did and merges the walk with the records of the baseline. A value is in
/// step with a record whose name begins with its own, and first lines are compared. With complete walks names
/// and values compare as a whole, and what lies behind the end of either side is reported; otherwise it is
/// only counted.
class RegistryCheck : public ComponentCheck {
  public:
    RegistryCheck(store::Vault& vault, const Machine& machine, const std::string& database,
                  BaselineFiles files);

    bool compare(platform::Progress& progress, reports::ReportSink& report) override;
    std::vector<Count> counts() const override { return findings_.counts(); }
    std::vector<Remark> remarks() const override;

  private:
    void compareValue(const RegistryRecord& live, platform::Progress& progress);
    bool isInStep(std::string_view line, const RegistryRecord& live) const;
    bool isEqual(std::string_view before, std::string_view now) const;
    std::optional<std::size_t> find(const RegistryRecord& live, platform::Progress& progress);
    // Each asks for every line whether the user wants the work to stop, and is false where that is so.
    bool missTo(std::size_t line, platform::Progress& progress);
    bool endLines(platform::Progress& progress);
    bool verify(platform::Progress& progress);

    store::Vault& vault_;
    const Machine& machine_;
    BaselineFiles baseline_;
    bool isComplete_;
    SealedLines lines_;
    std::optional<LineIndex> index_;
    std::size_t next_ = 0;
    RegistryFindings findings_;
    std::vector<Remark> walkRemarks_;
    std::uint64_t behindEnd_ = 0;
    std::uint64_t leftOver_ = 0;
    std::uint64_t byBeginning_ = 0;
};

}  // namespace corvalence::components
