#pragma once

#include <string>
#include <vector>

#include "files/check.h"
#include "files/folder_walk.h"
#include "platform/platform.h"
#include "reports/record_renderer.h"
#include "reports/report_writer.h"

namespace corvalence::components {

/// Writes what a check of listed files finds to the report of file contents: two lines a changed file, its
/// record as it is listed and the record that it would get now. Files that cannot be checked have none; they
/// are kept with their reasons.
class FileReport : public files::CheckObserver {
  public:
    explicit FileReport(reports::ReportSink& report) : report_(report) {}

    void unchecked(const std::string& path, const std::string& reason) override;
    void changed(const files::ChangedFileDetails& details, files::Reaction reaction, bool done,
                 const std::string& message) override;
    void note(const std::string& path, const std::string& text) override;

    const std::vector<files::UnreadableEntry>& notChecked() const noexcept { return notChecked_; }

  private:
    reports::ReportSink& report_;
    std::vector<files::UnreadableEntry> notChecked_;
};

/// The lines of the report of file contents.
class FileRenderer : public reports::RecordRenderer {
  public:
    explicit FileRenderer(const platform::Platform& system) : system_(system) {}

    bool beginsRecord(std::size_t number, std::string_view) const override { return number % 2 == 0; }
    std::optional<std::vector<std::string>> columns(std::string_view line) const override;
    std::vector<reports::ReportField> fields(std::size_t number, std::string_view line) const override;
    std::string text(std::size_t number, std::string_view line) const override;

  private:
    const platform::Platform& system_;
};

}  // namespace corvalence::components
