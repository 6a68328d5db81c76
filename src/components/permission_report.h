#pragma once

#include "base/path_rules.h"
#include "reports/record_renderer.h"

namespace corvalence::components {

/// The lines of a permissions report, two for each file whose access list changed: the record of the
/// database, and that of what is there now. A row is an entry.
class PermissionRenderer : public reports::RecordRenderer {
  public:
    explicit PermissionRenderer(const base::PathRules& paths) : paths_(paths) {}

    bool beginsRecord(std::size_t number, std::string_view line) const override;
    /// The row of the first entry.
    std::optional<std::vector<std::string>> columns(std::string_view line) const override;
    std::vector<std::vector<std::string>> rows(std::string_view line) const override;
    std::vector<reports::ReportField> fields(std::size_t number, std::string_view line) const override;
    /// Several lines: a heading, and for each entry its account, its domain and its rights in words.
    std::string text(std::size_t number, std::string_view line) const override;

  private:
    const base::PathRules& paths_;
};

}  // namespace corvalence::components
