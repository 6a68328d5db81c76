#include "schedule/check_worker.h"

#include "components/kinds.h"
#include "files/check.h"
#include "files/warning_sound.h"
#include "schedule/mail_message.h"
#include "schedule/schedule_settings.h"
#include "store/database_files.h"
#include "store/database_index.h"
#include "store/database_opening.h"

namespace corvalence::schedule {

namespace {

using State = store::DatabaseOpening::State;

WorkKind workKindOf(const std::optional<store::IndexRecord>& record) {
    if (!record) return WorkKind::Files;
    switch (record->kind) {
        case store::DatabaseKind::Numbered:
            return WorkKind::Files;
        case store::DatabaseKind::DirectoryStructure:
            return WorkKind::DirectoryStructure;
        case store::DatabaseKind::Permissions:
            return WorkKind::Permissions;
        case store::DatabaseKind::Registry:
            return WorkKind::Registry;
        case store::DatabaseKind::Services:
            return WorkKind::Services;
    }
    return WorkKind::Files;
}

/// One that cannot even be read is none that verifies; one whose own file is there is not missing.
State stateOf(store::Vault& vault, const std::string& database,
              const std::optional<store::IndexRecord>& record) {
    try {
        if (!vault.platform.files.status(database, platform::Follow::Yes)) return State::Missing;
        const State state = record ? store::DatabaseOpening(vault).state(*record) : State::Changed;
        return state == State::Ok ? State::Ok : State::Changed;
    } catch (const base::FileFailure&) {
        return State::Changed;
    }
}

files::RestoreChoice changedFile(const ScheduleSettings& settings) noexcept {
    return settings.movesChanged ? files::RestoreChoice::MoveChangedFile
                                 : files::RestoreChoice::DeleteChangedFile;
}

/// What stands behind "Reason: ", where there is one.
std::string reasonOf(const std::string& message) {
    constexpr std::string_view kReason = "Reason: ";
    const std::size_t at = message.find(kReason);
    return at == std::string::npos ? message : message.substr(at + kReason.size());
}

/// Hands the work of a check on to whoever shows it.
class ToldProgress : public platform::ForwardedProgress {
  public:
    ToldProgress(platform::Progress& inner, WorkListener& listener)
        : ForwardedProgress(inner), listener_(listener) {}

    void bar(std::uint32_t position) override {
        ForwardedProgress::bar(position);
        listener_.progress(position);
    }

  private:
    WorkListener& listener_;
};

}  // namespace

/// Warns of the first difference of a check, by sound and by the listener.
class CheckWarning {
  public:
    CheckWarning(store::Vault& vault, WorkListener& listener) : vault_(vault), listener_(listener) {}

    void raise() {
        if (wasRaised_) return;
        wasRaised_ = true;
        listener_.firstDifference();
        files::playWarning(vault_);
    }

    bool wasRaised() const noexcept { return wasRaised_; }

  private:
    store::Vault& vault_;
    WorkListener& listener_;
    bool wasRaised_ = false;
};

struct CheckWorker::Findings {
    WorkResult result = WorkResult::Incomplete;
    bool needsRestart = false;

    void take(bool differs, bool isWhole, bool isCancelled) {
        isDone = true;
        isModified = differs;
        result = isCancelled ? WorkResult::Cancelled
                 : differs   ? WorkResult::Differs
                 : isWhole   ? WorkResult::Same
                             : WorkResult::Incomplete;
    }
    /// The check came to an end, if only by Cancel.
    bool isDone = false;
    bool isModified = false;
    MailPlan mail = MailPlan::Off;
};

namespace {

class LoggedFiles : public files::CheckObserver {
  public:
    LoggedFiles(LogBlock& block, CheckWarning& warning, const ScheduleSettings& settings,
                const base::PathRules& paths)
        : block_(block), warning_(warning), settings_(settings), paths_(paths) {}

    void unchecked(const std::string& path, const std::string& reason) override {
        block_.unchecked(path, reason);
    }
    void changed(const files::ChangedFileDetails& details, files::Reaction reaction, bool done,
                 const std::string& message) override {
        warning_.raise();
        // The index of all databases is never put back.
        const bool isTried = reaction == files::Reaction::Restore;
        block_.changed(details, {isTried, done, changedFile(settings_), reasonOf(message)}, paths_);
    }
    void note(const std::string& path, const std::string& text) override { block_.note(path + ": " + text); }

  private:
    LogBlock& block_;
    CheckWarning& warning_;
    const ScheduleSettings& settings_;
    const base::PathRules& paths_;
};

/// The lines of a report as a log has them.
class LoggedReport : public reports::ReportSink {
  public:
    LoggedReport(LogBlock& block, CheckWarning& warning, const reports::RecordRenderer& renderer)
        : block_(block), warning_(warning), renderer_(renderer) {}

    void addLine(std::string_view line) override {
        warning_.raise();
        block_.change(renderer_.text(number_++, line));
    }
    bool isLasting() const noexcept override { return true; }

  private:
    LogBlock& block_;
    CheckWarning& warning_;
    const reports::RecordRenderer& renderer_;
    std::size_t number_ = 0;
};

}  // namespace

void CheckWorker::run(const std::string& database, const std::optional<store::IndexRecord>& record) {
    context_.listener.begins(database, workKindOf(record));
    LogPair pair(vault_, vault_.configuration.isOn(settings::key::kEmailEnabled));
    const Findings findings = writeBlock(database, record, pair);
    pair.close();
    if (pair.failure()) {
        vault_.platform.ui.message(platform::Icon::Warning,
                                   "The session log does not hold all of the check of " + database +
                                       ".\nReason: " + *pair.failure());
    }
    // A check of files stamps by itself.
    if (findings.isDone && record->kind != store::DatabaseKind::Numbered) stamp(database);
    if (isMailed(findings.mail))
        mailCheck(vault_, context_.mail, findings.mail, pair.text(), context_.waiting);
    if (findings.needsRestart) context_.listener.needsRestart();
    context_.listener.ends(findings.result);
}

CheckWorker::Findings CheckWorker::writeBlock(const std::string& database,
                                              const std::optional<store::IndexRecord>& record,
                                              LogSink& sink) {
    LogBlock block(sink, vault_.platform.clock);
    Findings findings;
    switch (stateOf(vault_, database, record)) {
        case State::Missing:
            findings.result = WorkResult::Missing;
            block.begin(database, BlockHeader::Missing);
            break;
        case State::Changed:
            findings.result = WorkResult::Altered;
            block.begin(database, BlockHeader::Altered);
            break;
        case State::Ok:
            block.begin(database, BlockHeader::Checked);
            check(*record, block, findings);
            break;
    }
    findings.mail = mailPlan(vault_.configuration, findings.isModified);
    block.end(findings.mail);
    return findings;
}

void CheckWorker::check(const store::IndexRecord& record, LogBlock& block, Findings& findings) {
    CheckWarning warning(vault_, context_.listener);
    try {
        const auto window = context_.openProgress("Checking Database: " + record.path);
        ToldProgress progress(*window, context_.listener);
        record.kind == store::DatabaseKind::Numbered
            ? checkFiles(record, block, warning, findings, progress)
            : checkBaseline(record, block, warning, findings, progress);
    } catch (const crypto::MovesPending& pending) {
        block.unchecked(record.path, pending.what());
        findings.needsRestart = true;
    } catch (const files::DatabaseChanged& changed) {
        block.note(changed.what());
    } catch (const base::FileFailure& failure) {
        block.unchecked(failure.path().empty() ? record.path : failure.path(), failure.reason());
    }
    if (findings.isDone || !warning.wasRaised()) return;
    // What was told before the failure is a difference all the same.
    findings.isModified = true;
    findings.result = WorkResult::Differs;
}

void CheckWorker::checkFiles(const store::IndexRecord& record, LogBlock& block, CheckWarning& warning,
                             Findings& findings, platform::Progress& progress) {
    store::OpenDatabaseContext context{record};
    const auto settings = ScheduleSettings::read(vault_.configuration);
    files::FixedReaction reaction(settings.autoRestore ? files::Reaction::Restore : files::Reaction::Ignore,
                                  changedFile(settings), false);
    LoggedFiles observer(block, warning, settings, vault_.platform.paths);
    files::FileContentsCheck check(vault_, context, reaction, observer);
    const files::CheckCounts counts = check.checkAllFiles(progress).counts;
    findings.take(counts.changed > 0, counts.unchecked == 0, counts.cancelled);
    if (counts.cancelled) block.cancelled();
    block.summary(counts);
}

void CheckWorker::checkBaseline(const store::IndexRecord& record, LogBlock& block, CheckWarning& warning,
                                Findings& findings, platform::Progress& progress) {
    const components::ComponentKind& kind = *components::findComponentKind(record.kind);
    const auto renderer = components::makeRenderer(kind.report, vault_.platform);
    LoggedReport report(block, warning, *renderer);
    const auto baseline =
        components::makeBaselineCheck(vault_, context_.machine, kind, store::Form::Standalone, record);
    const auto outcome =
        components::compareBaseline(vault_, baseline.file, *baseline.check, progress, report);
    if (outcome.isEmpty) {
        block.note(record.path + " is an empty database.");
        return;
    }
    findings.take(outcome.differs(), outcome.isWhole(), outcome.cancelled);
    if (outcome.cancelled) block.cancelled();
    block.summary(record.kind, outcome);
}

void CheckWorker::stamp(const std::string& database) {
    try {
        store::DatabaseIndex(vault_).stampChecked(database, vault_.platform.clock.now());
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Warning, failure.what());
    }
}

}  // namespace corvalence::schedule
