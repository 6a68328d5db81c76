#pragma once

#include "cli/context.h"
#include "files/check.h"

namespace corvalence::cli {

/// Asks on the terminal what is to be done about a changed file.
class ChangedFilePrompt : public files::ChangedFileDetailsDialog {
  public:
    explicit ChangedFilePrompt(Context& context) : context_(context) {}

    /// Ignore, the default, where nobody answers any more.
    files::Reaction show(const files::ChangedFileDetails& details) override;
    std::optional<files::RestoreChoice> showRestore(const std::string& path) override;
    bool attended() const override { return true; }

  private:
    std::optional<std::size_t> choose(std::size_t count, std::size_t fallback);

    Context& context_;
};

/// The answers that the command line gave beforehand.
class FixedReaction : public files::ChangedFileDetailsDialog {
  public:
    FixedReaction(files::Reaction reaction, files::RestoreChoice changedFile)
        : reaction_(reaction), changedFile_(changedFile) {}

    files::Reaction show(const files::ChangedFileDetails&) override { return reaction_; }
    std::optional<files::RestoreChoice> showRestore(const std::string&) override { return changedFile_; }
    bool attended() const override { return false; }

  private:
    files::Reaction reaction_;
    files::RestoreChoice changedFile_;
};

}  // namespace corvalence::cli
