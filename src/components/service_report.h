#pragma once

#include "base/path_rules.h"
#include "base/record_text.h"
#include "reports/record_renderer.h"

namespace corvalence::components {

/// What a line of a services report says of the service whose record stands before it.
namespace service_code {
inline constexpr std::string_view kBefore = "Cf";  // changed, as it was
inline constexpr std::string_view kNow = "Ct";     // changed, as it is; stands behind the line before
inline constexpr std::string_view kAdded = "A";
inline constexpr std::string_view kRemoved = "R";
}  // namespace service_code

/// The lines of a services report: a whole record and a code.
class ServiceRenderer : public reports::RecordRenderer {
  public:
    explicit ServiceRenderer(const base::PathRules&) {}

    bool beginsRecord(std::size_t number, std::string_view line) const override;
    std::optional<std::vector<std::string>> columns(std::string_view line) const override;
    std::vector<reports::ReportField> fields(std::size_t number, std::string_view line) const override;
    /// Several lines: a heading, and one for each field.
    std::string text(std::size_t number, std::string_view line) const override;
};

}  // namespace corvalence::components
