#include "gui/check_commands.h"

#include <QFileDialog>

#include "components/complete_system.h"
#include "components/kinds.h"
#include "files/check.h"
#include "gui/dialogs/changed_file_window.h"
#include "gui/dialogs/check_done_window.h"
#include "gui/dialogs/check_summary_window.h"
#include "gui/dialogs/complete_system_window.h"
#include "gui/support/text.h"
#include "reports/report_writer.h"
#include "reports/saved_report.h"
#include "schedule/log_files.h"

namespace corvalence::gui {

namespace {

using shell::Command;

constexpr std::size_t kNotesTold = 20;

/// With a person at it the check tells by itself what it finds; what there is to say beside that, such as
/// where a changed file went, is told at its end.
class Notes : public files::CheckObserver {
  public:
    explicit Notes(platform::UserInterface& ui) : ui_(ui) {}

    void unchecked(const std::string&, const std::string&) override {}
    void changed(const files::ChangedFileDetails&, files::Reaction, bool, const std::string&) override {}
    void note(const std::string& path, const std::string& text) override {
        if (++count_ <= kNotesTold) text_ += (text_.empty() ? "" : "\n\n") + path + "\n" + text;
    }

    void tell() const {
        if (count_ == 0) return;
        const std::string more =
            count_ > kNotesTold ? "\n\n" + std::to_string(count_ - kNotesTold) + " more." : std::string();
        ui_.message(platform::Icon::Information, text_ + more);
    }

  private:
    platform::UserInterface& ui_;
    std::string text_;
    std::size_t count_ = 0;
};

}  // namespace

CheckCommands::CheckCommands(Workspace& workspace) : work_(workspace) {
    CommandActions& actions = work_.frame().actions();
    actions.handle(Command::CheckDatabase, [this] { check(); });
    actions.handle(Command::SaveReport, [this] { saveReport(); });
    actions.handle(Command::ViewSavedReport, [this] { viewSavedReport(); });
    actions.handle(Command::NextReport, [this] { work_.nextPage(); });
    actions.handle(Command::PreviousReport, [this] { work_.previousPage(); });
}

void CheckCommands::check() {
    if (!work_.database()) {
        openDatabase();  // and goes on to its check
        return;
    }
    // It may have been changed since it was opened.
    auto proved = work_.openProved(work_.database()->path());
    if (!proved) return;
    work_.database() = std::move(proved);
    checkProved();
}

void CheckCommands::checkProved() {
    switch (work_.state().mode) {
        case shell::Mode::FileContents:
            checkFiles(*work_.database());
            work_.reloadFiles();
            return;
        case shell::Mode::CompleteSystem:
            checkSystem(*work_.database());
            return;
        default:
            checkComponent(*work_.database());
    }
}

void CheckCommands::checkWithPrompts(const std::string& path) {
    if (auto database = work_.openProved(path)) checkFiles(*database);
}

void CheckCommands::checkFiles(store::OpenDatabaseContext& database) {
    ChangedFilePrompt dialog(work_.vault(), database, work_.openHelp());
    Notes notes(work_.platform().ui);
    files::CheckSummary summary;
    try {
        summary = files::FileContentsCheck(work_.vault(), database, dialog, notes).checkAllFiles();
    } catch (...) {
        notes.tell();  // an update that was not saved is one of them
        throw;
    }
    notes.tell();
    if (!summary.counts.cancelled) CheckSummaryWindow(summary, work_.openHelp(), &work_.frame()).exec();
}

void CheckCommands::checkComponent(const store::OpenDatabaseContext& database) {
    const auto& kind = *components::findComponentKind(database.record.kind);
    const auto outcome = components::checkDatabase(work_.vault(), work_.machine(), kind, database);
    work_.frame().setStatus(0, "Ready");
    if (outcome.cancelled || outcome.isEmpty) return;
    work_.tellRemarks("Not everything could be checked:", outcome.remarks);
    const QString title = shown(std::string(kind.checkTitle).append(database.path()));
    CheckDoneWindow(title, {{{}, outcome}}, false, &work_.frame()).exec();
    work_.reports().showCurrent({kind.report});
    if (!outcome.isWhole()) work_.reports().markIncomplete(kind.report);
    work_.showReport();
}

void CheckCommands::checkSystem(const store::OpenDatabaseContext& database) {
    ScanSelectionWindow selection(work_.openHelp(), &work_.frame());
    if (selection.exec() != QDialog::Accepted) return;
    const auto checked =
        components::checkCompleteSystem(work_.vault(), work_.machine(), database, selection.selection());
    work_.frame().setStatus(0, "Ready");
    if (checked.cancelled) return;
    std::vector<components::Remark> remarks;
    std::vector<CheckDoneWindow::Part> parts;
    for (const components::ComponentChecked& component : checked.components) {
        const auto& told = component.outcome.remarks;
        remarks.insert(remarks.end(), told.begin(), told.end());
        parts.push_back({componentText(component.component), component.outcome});
    }
    work_.tellRemarks("Not everything could be checked:", remarks);
    const QString title = shown("Checking Complete System Database: " + database.path());
    if (CheckDoneWindow(title, parts, true, &work_.frame()).exec() != QDialog::Accepted) {
        reports::removeReports(work_.vault());
        return;
    }
    work_.platform().ui.message(platform::Icon::Information, std::string(components::kReportsMade));
    if (checked.firstPage() == 0) {
        work_.showNoReport(components::systemPageCaption(0));
        return;
    }
    std::vector<reports::ReportKind> kinds;
    for (const reports::ReportRow& row : reports::reportRows())
        kinds.push_back(row.kind);
    work_.reports().showCurrent(std::move(kinds), checked.firstPage());
    for (const components::ComponentChecked& component : checked.components) {
        if (!component.outcome.isWhole()) work_.reports().markIncomplete(component.component);
    }
    work_.showReport();
}

void CheckCommands::saveReport() {
    const QString chosen = QFileDialog::getSaveFileName(&work_.frame(), QStringLiteral("Save Report."), {},
                                                        QStringLiteral("Corvalence Report (*)"), nullptr,
                                                        QFileDialog::DontConfirmOverwrite);
    if (chosen.isEmpty()) return;
    const auto planned = reports::plannedSaves(work_.vault(), chosenPath(chosen));
    const schedule::LogFiles logs(work_.vault());
    for (const reports::SavedReport& report : planned) {
        // The components of a Complete System have names with letters as well.
        if (const auto fault = logs.findExportFault(report.path)) {
            work_.platform().ui.message(platform::Icon::Stop, *fault);
            continue;
        }
        // The letter makes it another file than the one that the dialog knows of.
        const bool isThere = work_.platform().files.status(report.path, platform::Follow::Yes).has_value();
        if (isThere && !work_.platform().ui.ask(platform::Icon::Warning,
                                                report.path + " already exists.\n\nReplace it?"))
            continue;
        reports::saveReport(work_.vault(), report);
    }
}

void CheckCommands::viewSavedReport() {
    const QString chosen = QFileDialog::getOpenFileName(&work_.frame(), QStringLiteral("View Saved Report."));
    if (chosen.isEmpty()) return;
    const auto mode = shell::modeRow(work_.state().mode).report;
    if (work_.reports().showSaved(chosenPath(chosen), mode)) work_.showReport();
}

}  // namespace corvalence::gui
