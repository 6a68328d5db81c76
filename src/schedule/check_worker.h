#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "components/machine.h"
#include "schedule/log_files.h"
#include "schedule/mail_thread.h"
#include "schedule/work_listener.h"
#include "store/open_database.h"

namespace corvalence::schedule {

/// What the checks of a schedule need beside the vault.
struct WorkContext {
    store::Vault& vault;
    const components::Machine& machine;
    WorkListener& listener;
    MailThread& mail;
    MailWaiting& waiting;
    /// Opens what shows a check under way: a window, a line, or nothing but a way to cancel.
    std::function<std::unique_ptr<platform::Progress>(const std::string& title)> openProgress;
};

class CheckWarning;

/// Checks one database of the schedule without a user: a block in the session log, the warning, files put
/// back where the settings say so, the stamp in the index, the mail. One routine for every kind and way.
class CheckWorker {
  public:
    explicit CheckWorker(const WorkContext& context) : context_(context), vault_(context.vault) {}

    /// `record`: what the index has of the database, if anything. Never throws for the database or the log:
    /// what fails is in the block, or told to the user.
    void run(const std::string& database, const std::optional<store::IndexRecord>& record);

  private:
    struct Findings;

    Findings writeBlock(const std::string& database, const std::optional<store::IndexRecord>& record,
                        LogSink& sink);
    void check(const store::IndexRecord& record, LogBlock& block, Findings& findings);
    void checkFiles(const store::IndexRecord& record, LogBlock& block, CheckWarning& warning,
                    Findings& findings, platform::Progress& progress);
    void checkBaseline(const store::IndexRecord& record, LogBlock& block, CheckWarning& warning,
                       Findings& findings, platform::Progress& progress);
    void stamp(const std::string& database);

    const WorkContext& context_;
    store::Vault& vault_;
};

}  // namespace corvalence::schedule
