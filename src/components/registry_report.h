#pragma once

#include <array>
#include <string_view>

#include "base/path_rules.h"
#include "reports/record_renderer.h"

namespace corvalence::components {

enum class RegistryChange { Added, Removed, Changed };

struct RegistryChangeRow {
    std::string_view code;     // in the report
    std::string_view name;     // of its counter, for documents
    std::string_view total;    // behind its counter
    std::string_view status;   // in a report's list
    std::string_view heading;  // on a console and in a log
};

/// One row a change, in the order of the enumeration.
inline constexpr std::array<RegistryChangeRow, 3> kRegistryChanges = {{
    {"A", "added", " New Registry Subkeys", "Added.", "New Registry Subkey: "},
    {"R", "removed", " Removed Registry Subkeys", "Removed.", "Removed Registry Subkey: "},
    {"C", "changed", " Changed Registry Values", "Changed.", "Changed Registry Value: "},
}};

constexpr const RegistryChangeRow& registryChange(RegistryChange change) noexcept {
    return kRegistryChanges[static_cast<std::size_t>(change)];
}

/// The lines of a registry report: name, type, data and code; of a changed value its new type and data behind
/// them.
class RegistryRenderer : public reports::RecordRenderer {
  public:
    explicit RegistryRenderer(const base::PathRules&) {}

    std::optional<std::vector<std::string>> columns(std::string_view line) const override;
    std::vector<reports::ReportField> fields(std::size_t number, std::string_view line) const override;
    /// Several lines: a heading, and one for each field.
    std::string text(std::size_t number, std::string_view line) const override;
};

}  // namespace corvalence::components
