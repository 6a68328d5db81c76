#pragma once

#include <span>
#include <string>
#include <string_view>

#include "components/component_check.h"
#include "files/check.h"
#include "platform/clock.h"
#include "settings/configuration.h"

namespace corvalence::schedule {

/// Takes the text of a log as it comes; lines end in "\n".
class LogSink {
  public:
    virtual ~LogSink() = default;
    virtual void write(std::string_view text) = 0;
};

/// What the block of a check begins with.
enum class BlockHeader {
    Checked,
    Missing,  // the database is gone
    Altered,  // its file is not the one that the index expects
};

/// What becomes of a block as a mail.
enum class MailPlan { Off, NoModification, Plain, Sealed };

/// By Config23 to 25. `modified`: whether the check found a difference; one that was not made found none.
MailPlan mailPlan(const settings::Configuration& configuration, bool modified);
constexpr bool isMailed(MailPlan plan) noexcept {
    return plan == MailPlan::Plain || plan == MailPlan::Sealed;
}

/// What Auto Restore did with a changed file.
struct AutoRestoreResult {
    bool isOn = false;
    bool isRestored = false;
    files::RestoreChoice changedFile = files::RestoreChoice::MoveChangedFile;
    std::string reason;  // of a failure
};

/// The block of one check in a log, line by line: header, changes as they are found, summary, what is mailed,
/// a line across. Calls come in this order. Fails as its sink does.
class LogBlock {
  public:
    LogBlock(LogSink& sink, platform::Clock& clock) : sink_(sink), clock_(clock) {}

    /// The first four lines, with the present time.
    void begin(std::string_view database, BlockHeader header);

    // What a File Contents check finds.
    void changed(const files::ChangedFileDetails& details, const AutoRestoreResult& restored,
                 const base::PathRules& paths);
    void unchecked(std::string_view path, std::string_view reason);

    /// What the check of another kind finds, as the kind's renderer words a line of its report.
    void change(std::string_view text) { line(text); }
    /// One more line about what was told last.
    void note(std::string_view text) { line(text); }
    void cancelled() { line("[ CANCELLED MID CHECK ]"); }

    void summary(const files::CheckCounts& counts);
    /// Every path that could not be compared, the kind's totals, and what else keeps the result from being
    /// whole.
    void summary(store::DatabaseKind kind, const components::CheckOutcome& outcome);

    /// The last lines.
    void end(MailPlan mail);

  private:
    void line(std::string_view text);
    void total(std::uint64_t count, std::string_view text);

    LogSink& sink_;
    platform::Clock& clock_;
};

}  // namespace corvalence::schedule
