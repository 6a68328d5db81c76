#pragma once

#include <functional>

#include "cli/context.h"
#include "files/check.h"
#include "files/file_analysis.h"

namespace corvalence::cli {

/// Asks on the terminal what is to be done about a changed file; before that it shows, as often as it is
/// wanted, where the file differs from its backup.
class ChangedFilePrompt : public files::ChangedFileDetailsDialog {
  public:
    ChangedFilePrompt(Context& context, store::Vault& vault, const store::OpenDatabaseContext& database)
        : context_(context), vault_(vault), database_(database) {}

    /// Ignore, the default, where nobody answers any more.
    files::Reaction show(const files::ChangedFileDetails& details) override;
    std::optional<files::RestoreChoice> showRestore(const std::string& path) override;
    bool attended() const override { return true; }

  private:
    /// `other` gets what is typed and is no choice; the question is asked again then.
    std::optional<std::size_t> choose(std::size_t count, std::size_t fallback,
                                      const std::function<void(const std::string&)>& other = {});
    void analyse(const files::FileRecord& record, files::AnalysisView view);
    void writeDifferences(files::FileAnalysis& analysis, files::AnalysisView view);

    Context& context_;
    store::Vault& vault_;
    const store::OpenDatabaseContext& database_;
};

}  // namespace corvalence::cli
