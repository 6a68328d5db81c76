#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "components/component_check.h"
#include "components/registry_report.h"
#include "reports/report_writer.h"

namespace corvalence::components {

/// What a registry check found, in the order in which it found it. Only first lines are kept.
class RegistryFindings {
  public:
    struct Value {
        std::string type;
        std::string data;

        bool operator==(const Value&) const = default;
    };

    /// `name` as the report shows it, `identity` the same for one value wherever it comes from. `rest`: type
    /// and data with the separator between them.
    void addNew(std::string_view name, std::string_view identity, std::string_view rest);
    void addRemoved(std::string_view name, std::string_view rest);
    void addChanged(std::string_view name, std::string_view before, std::string_view now);

    /// From here on each is told as soon as joinMoved() cannot change it any more.
    void tellTo(reports::ReportSink& report) noexcept { report_ = &report; }

    /// Makes one finding of a value that was found removed and, further on, added, as one that only has
    /// another place: none where it is the same, else a change. False where the user cancelled.
    bool joinMoved(platform::Progress& progress);

    std::vector<Count> counts() const;
    /// Tells those that were not told yet, as long as `goesOn`; whether it came to their end.
    bool write(reports::ReportSink& report, const std::function<bool()>& goesOn) const;

  private:
    struct Finding {
        RegistryChange change;
        std::string name;
        std::string identity;
        Value value;
        Value now;  // of a changed one
        bool isDropped = false;
        bool isTold = false;
    };

    void add(Finding finding);
    static void tell(const Finding& finding, reports::ReportSink& report);
    std::uint64_t& countOf(RegistryChange change) { return counts_[static_cast<std::size_t>(change)]; }

    std::vector<Finding> findings_;
    reports::ReportSink* report_ = nullptr;
    std::unordered_set<std::string> removed_;  // identities, while they are told to it
    std::array<std::uint64_t, kRegistryChanges.size()> counts_{};
};

}  // namespace corvalence::components
