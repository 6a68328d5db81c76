#include "gui/workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <new>

#include "base/shown_text.h"
#include "components/kinds.h"
#include "crypto/working_files.h"
#include "files/database_copy.h"
#include "files/file_texts.h"
#include "gui/support/text.h"
#include "gui/views/dropped_files.h"
#include "gui/views/file_list_view.h"
#include "gui/views/report_view.h"
#include "store/database_files.h"
#include "store/database_opening.h"

namespace corvalence::gui {

namespace {

using shell::Command;
using shell::View;

constexpr std::size_t kDetailsTold = 10;
constexpr std::string_view kTitleBehindReport = "Corvalence.";

}  // namespace

Workspace::Workspace(platform::Platform& platform, const components::Machine& machine, core::Run& run,
                     Frame& frame, OpenHelp openHelp)
    : platform_(platform),
      machine_(machine),
      run_(run),
      frame_(frame),
      openHelp_(std::move(openHelp)),
      reports_(run.vault()) {
    frame_.actions().dispatch = [this](const CommandActions::Handler& handler) { perform(handler); };
    QObject::connect(QApplication::clipboard(), &QClipboard::dataChanged, &frame_, [this] {
        readClipboard();
        refresh();
    });
    readClipboard();
}

/// Only when it has changed: whoever owns it may take time to answer.
void Workspace::readClipboard() {
    const QMimeData* pasted = QApplication::clipboard()->mimeData();
    state_.hasFilesToPaste = pasted != nullptr && !pathsOf(*pasted).empty();
}

void Workspace::setScheduleRunning(bool isRunning) {
    state_.isScheduleRunning = isRunning;
    refresh();
}

void Workspace::setMode(shell::Mode mode) {
    if (mode != state_.mode && state_.isDatabaseOpen) close();
    state_.mode = mode;
    frame_.setWindowTitle(shown(shell::modeRow(mode).title));
    if (state_.view == View::Empty) frame_.showEmpty(mode, database_ ? database_->path() : std::string());
    refresh();
}

void Workspace::showDatabase(store::OpenDatabaseContext database) {
    leaveDatabase();
    const bool isSystem = store::isCompleteSystem(vault(), database.record);
    setMode(shell::modeOf(database.record.kind, isSystem));
    database_ = std::move(database);
    state_.isDatabaseOpen = true;
    frame_.setWindowTitle(shown("Corvalence - " + database_->path()));
    state_.mode == shell::Mode::FileContents ? listFiles() : frame_.showEmpty(state_.mode, database_->path());
    refresh();
}

void Workspace::dress(ListTable& list) const {
    const CommandActions& actions = frame_.actions();
    list.setShowGrid(actions.action(Command::GridLines)->isChecked());
    list.setInverted(actions.action(Command::InvertColours)->isChecked());
}

std::optional<store::OpenDatabaseContext> Workspace::openProved(const std::string& path) {
    std::optional<store::OpenDatabaseContext> database;
    const auto result = store::DatabaseOpening(vault()).openWithRecovery(path, database);
    if (result != store::OpenResult::Opened && result != store::OpenResult::Restored) return std::nullopt;
    return database;
}

void Workspace::listFiles() {
    fileList_ = new FileListView;
    fileList_->setObjectName(QStringLiteral("fileList"));
    fileList_->onSelectionChanged = [this] { refresh(); };
    fileList_->onDrop = [this](const std::vector<std::string>& paths) {
        // Behind the drop: whoever drags waits for its end.
        QTimer::singleShot(0, &frame_, [this, paths] { perform([&] { onDrop(paths); }); });
    };
    fileList_->onContextMenu = [this](const QPoint& at) {
        QMenu menu;
        frame_.fillListMenu(menu, *fileList_);
        menu.exec(at);
    };
    dress(*fileList_);
    state_.view = View::FileList;
    frame_.showView(fileList_);
    reloadFiles();
}

void Workspace::reloadFiles() {
    if (fileList_ == nullptr || !database_) return;
    fileList_->files().reload(vault(), *database_);
    refresh();
}

/// What the status panes say is of the database that comes, not of the one that goes.
void Workspace::leaveDatabase() {
    if (state_.view == View::Report) leaveReport();
    database_.reset();
    pageCaption_.clear();
    state_.isDatabaseOpen = false;
    state_.view = View::Empty;
    fileList_ = nullptr;
    frame_.showEmpty(state_.mode, {});
}

void Workspace::close() {
    const auto title = state_.view == View::Report ? kTitleBehindReport : shell::kPlainTitle;
    leaveDatabase();
    frame_.setWindowTitle(shown(title));
    frame_.setStatus(0, std::string(shell::kLockedText));
    frame_.setStatus(1, {});
    refresh();
}

void Workspace::showNoReport(const std::string& caption) {
    pageCaption_ = caption;
    refresh();
}

void Workspace::showReport() {
    if (report_ == nullptr) {
        auto* view = new ReportView(reports_);
        view->setObjectName(QStringLiteral("reportView"));
        view->onChanged = [this] { showReport(); };
        dress(view->table());
        view->table().onSelectionChanged = [this] { refresh(); };
        fileList_ = nullptr;
        frame_.showView(view);
        report_ = view;
    }
    state_.view = View::Report;
    frame_.setWindowTitle(shown(reports_.row().title));
    report_->refresh();
    refresh();
}

void Workspace::leaveReport() {
    report_ = nullptr;
    state_.view = View::Empty;
    frame_.showEmpty(state_.mode, database_ ? database_->path() : std::string());
    frame_.setWindowTitle(shown(shell::modeRow(state_.mode).title));
    reports_.clear();
}

void Workspace::goToPage(std::size_t page) {
    if (state_.view == View::FileList) fileList_->files().goToPage(page);
    if (state_.view == View::Report) {
        reports_.goToPage(page);
        report_->refresh();
    }
    refresh();
}

void Workspace::nextPage() {
    if (state_.view == View::FileList) goToPage(fileList_->files().page() + 1);
    if (state_.view == View::Report) report_->showNext();
}

void Workspace::previousPage() {
    if (state_.view == View::FileList && fileList_->files().page() > 1)
        goToPage(fileList_->files().page() - 1);
    if (state_.view == View::Report) report_->showPrevious();
}

void Workspace::perform(const std::function<void()>& work) {
    if (isBusy_ || isEnding_) return;
    isBusy_ = true;
    // What failed in the middle may have changed what is listed.
    if (!tellFailure(work) && !isEnding_) tellFailure([this] { reloadFiles(); });
    isBusy_ = false;
    refresh();
    isEnding_ ? closeProgram() : onIdle();
}

bool Workspace::tellFailure(const std::function<void()>& work) {
    platform::UserInterface& ui = platform_.ui;
    try {
        work();
        return true;
    } catch (const crypto::MovesPending& pending) {
        // What is half done is completed by the next start, and nothing else may come in between.
        ui.message(platform::Icon::Stop, pending.what());
        isEnding_ = true;
    } catch (const std::bad_alloc&) {
        ui.message(platform::Icon::Stop, "Not enough memory.");
    } catch (const std::exception& failure) {
        ui.message(platform::Icon::Stop, failure.what());
    }
    return false;
}

void Workspace::requestEnd() {
    isEnding_ = true;
    // A dialog in front waits for an answer, a progress window for Cancel: both take this for it.
    if (QWidget* front = QApplication::activeModalWidget()) front->close();
    if (!isBusy_) closeProgram();
}

void Workspace::tellRemarks(const std::string& heading, const std::vector<components::Remark>& remarks) {
    std::string text;
    for (const components::Remark& remark : remarks) {
        if (!remark.isFault) continue;
        std::string lines = std::to_string(remark.count).append(remark.text) + "\n";
        const std::size_t told = std::min(remark.details.size(), kDetailsTold);
        for (std::size_t at = 0; at < told; ++at)
            lines += "  " + base::shown(remark.details[at].path) + "  " + remark.details[at].reason + "\n";
        if (told < remark.details.size()) lines += "  ...\n";
        // Components that walk the same folders say the same.
        if (("\n" + text).find("\n" + lines) == std::string::npos) text += lines;
    }
    if (text.empty()) return;
    text.pop_back();  // no empty line at the end
    platform_.ui.message(platform::Icon::Warning, heading + "\n\n" + text);
}

void Workspace::refresh() {
    state_.rows = 0;
    state_.selectedRows = 0;
    state_.isCurrentReport = reports_.isShown() && !reports_.isSaved();
    state_.hasNextReport = reports_.isShown() && reports_.hasNext();
    state_.hasPreviousReport = reports_.isShown() && reports_.hasPrevious();
    if (state_.view == View::FileList && fileList_ != nullptr) {
        state_.rows = static_cast<std::size_t>(fileList_->files().count());
        state_.selectedRows = fileList_->selectedRows().size();
    } else if (state_.view == View::Report) {
        state_.rows = reports_.lines();
    }
    frame_.update(state_);
    refreshBars();
}

void Workspace::refreshBars() {
    const bool isList = state_.view == View::FileList && fileList_ != nullptr;
    frame_.setInfo(Command::DatabaseContentsBar,
                   {"Files: " + (isList ? std::to_string(fileList_->files().count()) : ""), std::nullopt});
    frame_.setInfo(
        Command::DatabaseSizeBar,
        {"Size: " + (isList ? files::formatSizeText(fileList_->files().totalSize()) : ""), std::nullopt});
    if (isList) {
        frame_.setPage(fileList_->files().caption(), fileList_->files().page() > 1,
                       fileList_->files().page() < fileList_->files().pages());
    } else if (state_.view == View::Report) {
        frame_.setPage(reports_.barCaption(), reports_.hasPrevious(), reports_.hasNext());
    } else {
        frame_.setPage(pageCaption_, false, false);
    }
}

}  // namespace corvalence::gui
