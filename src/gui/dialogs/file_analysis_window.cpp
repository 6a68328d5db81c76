#include "gui/dialogs/file_analysis_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/dialogs/analysis_lists.h"
#include "gui/dialogs/elided_label.h"
#include "gui/support/bars.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/event_pump.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using files::AnalysisView;
using files::FileAnalysis;

constexpr int kWidth = 980;
constexpr int kHeight = 620;
constexpr int kBeside = 40;  // of the screen

std::string_view initiating(AnalysisView view) {
    return view == AnalysisView::Text ? "Initiating File Analysis [Text details]..."
                                      : "Initiating File Analysis [Hex details]...";
}

}  // namespace

/// Shows a search in the window's own bar; Cancel is the window's.
class FileAnalysisWindow::Search : public platform::Progress {
  public:
    explicit Search(FileAnalysisWindow& window) : window_(window) {
        window_.isSearching_ = true;
        window_.isStopped_ = false;
        window_.enableButtons();
    }
    ~Search() override {
        window_.isSearching_ = false;
        window_.enableButtons();
    }

    bool cancelled() override {
        pump_.pump();
        return window_.isStopped_;
    }
    void bar(std::uint32_t position) override { window_.bar_->setValue(static_cast<int>(position)); }

  private:
    FileAnalysisWindow& window_;
    EventPump pump_;
};

FileAnalysisWindow::FileAnalysisWindow(store::Vault& vault, const store::OpenDatabaseContext& database,
                                       const files::FileRecord& record, const OpenHelp& openHelp,
                                       QWidget* parent)
    : QDialog(parent), vault_(vault), path_(record.path), analysis_(vault, database, record) {
    setObjectName(QStringLiteral("fileAnalysisWindow"));
    setWindowTitle(QStringLiteral("File Analysis: ") + shown(vault.platform.paths.fileName(record.path)));
    setSizeGripEnabled(true);
    auto* layout = new QVBoxLayout(this);
    addLists(*layout);
    addSearchRow(*layout);
    addButtons(*layout, openHelp);
    // As much of both sides as the screen has room for.
    const int widest = screen()->availableSize().width() - kBeside;
    resize(std::clamp(lists_->wholeWidth(), kWidth, std::max(kWidth, widest)), kHeight);
    showView(AnalysisView::Text);
}

FileAnalysisWindow::~FileAnalysisWindow() = default;

void FileAnalysisWindow::addLists(QVBoxLayout& layout) {
    // Told later: the list that asks for the row is just being drawn.
    const auto tell = [this](const std::string& why) {
        QTimer::singleShot(0, this, [this, why] { setStatus(why); });
    };
    lists_ = new AnalysisLists(analysis_, tell);
    layout.addWidget(lists_, 1);
}

void FileAnalysisWindow::addSearchRow(QVBoxLayout& layout) {
    auto* row = new QHBoxLayout;
    status_ = new ElidedLabel;
    status_->setObjectName(QStringLiteral("statusLabel"));
    bar_ = makeBar();
    bar_->setObjectName(QStringLiteral("progressBar"));
    bar_->setAccessibleName(QStringLiteral("Search for differences"));
    bar_->setRange(0, static_cast<int>(platform::Progress::kSteps));
    bar_->setTextVisible(false);
    // Its room stays while it is hidden, so that nothing moves.
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setRetainSizeWhenHidden(true);
    bar_->setSizePolicy(policy);
    row->addWidget(status_, 2);
    row->addWidget(bar_, 1);
    layout.addLayout(row);
}

QPushButton* FileAnalysisWindow::addViewButton(AnalysisView view, const char* text, const char* name) {
    QPushButton* button = buttons_->addButton(QLatin1String(text), QDialogButtonBox::ActionRole);
    button->setObjectName(QLatin1String(name));
    button->setCheckable(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, view] { showView(view); });
    return button;
}

void FileAnalysisWindow::addButtons(QVBoxLayout& layout, const OpenHelp& openHelp) {
    buttons_ = makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                           openHelp, QStringLiteral("fileanalysis"));
    text_ = addViewButton(AnalysisView::Text, "&Text Display", "textButton");
    hex_ = addViewButton(AnalysisView::Hex, "He&x Display", "hexButton");
    const auto addSearch = [this](const char* text, const char* name, void (FileAnalysisWindow::*go)()) {
        QPushButton* button = buttons_->addButton(QLatin1String(text), QDialogButtonBox::ActionRole);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, go);
        return button;
    };
    previous_ = addSearch("&Previous Difference", "previousButton", &FileAnalysisWindow::goPrevious);
    next_ = addSearch("Next &Difference", "nextButton", &FileAnalysisWindow::goNext);
    layout.addWidget(buttons_);
}

bool FileAnalysisWindow::isComparable() const {
    return analysis_.backup() == FileAnalysis::Backup::Found && analysis_.nowFailure().empty();
}

void FileAnalysisWindow::enableButtons() {
    text_->setEnabled(!isSearching_);
    hex_->setEnabled(!isSearching_);
    next_->setEnabled(!isSearching_ && isComparable());
    previous_->setEnabled(!isSearching_ && isComparable());
    bar_->setVisible(isSearching_);
}

void FileAnalysisWindow::setStatus(const std::string& text) {
    status_->setText(shown(text));
}

void FileAnalysisWindow::tellTrouble() {
    if (!analysis_.nowFailure().empty())
        setStatus(path_ + " could not be opened. Reason: " + analysis_.nowFailure());
    if (!analysis_.trouble().empty()) vault_.platform.ui.message(platform::Icon::Stop, analysis_.trouble());
}

void FileAnalysisWindow::showView(AnalysisView view) {
    vault_.platform.ui.status(0, std::string(initiating(view)));
    text_->setChecked(view == AnalysisView::Text);
    hex_->setChecked(view == AnalysisView::Hex);
    lists_->setView(view);
    enableButtons();
    vault_.platform.ui.status(0, "Ready");
}

void FileAnalysisWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (wasShown_) return;
    wasShown_ = true;
    QTimer::singleShot(0, this, [this] {
        tellTrouble();
        if (isComparable()) goForward(0);
    });
}

void FileAnalysisWindow::goNext() {
    goForward(lists_->picked() ? *lists_->picked() + 1 : lists_->top());
}

void FileAnalysisWindow::goPrevious() {
    goBack(lists_->picked().value_or(lists_->top()));
}

void FileAnalysisWindow::goForward(std::uint64_t from) {
    search([this, from](files::ByteProgress& progress, std::uint64_t& row) {
        return analysis_.forEachDifference(lists_->view(), from, progress,
                                           [&](const files::DifferingRow& differing) {
                                               row = differing.number;
                                               return false;
                                           });
    });
}

void FileAnalysisWindow::goBack(std::uint64_t before) {
    search([this, before](files::ByteProgress& progress, std::uint64_t& row) {
        return analysis_.findDifferenceBefore(lists_->view(), before, progress, row);
    });
}

void FileAnalysisWindow::search(
    const std::function<FileAnalysis::Walk(files::ByteProgress&, std::uint64_t&)>& find) {
    if (isSearching_) return;
    const std::string status(files::analysisStatus(lists_->view()));
    vault_.platform.ui.status(0, status);
    setStatus(status);
    bar_->setValue(0);
    std::string outcome;
    {
        Search progress(*this);
        try {
            files::ByteProgress bytes(progress, analysis_.size());
            std::uint64_t row = 0;
            switch (find(bytes, row)) {
                case FileAnalysis::Walk::Stopped:
                    lists_->pick(row);
                    break;
                case FileAnalysis::Walk::Whole:
                    outcome = "No further difference.";
                    break;
                case FileAnalysis::Walk::Cancelled:
                    outcome = "The search was cancelled.";
                    break;
            }
        } catch (const base::FileFailure& failure) {
            outcome = failure.what();
        }
    }
    setStatus(outcome);
    vault_.platform.ui.status(0, "Ready");
    if (resultAfterSearch_) QDialog::done(*resultAfterSearch_);
}

void FileAnalysisWindow::done(int result) {
    if (!isSearching_) {
        QDialog::done(result);
        return;
    }
    isStopped_ = true;
    resultAfterSearch_ = result;
}

void FileAnalysisWindow::reject() {
    if (isSearching_) {
        isStopped_ = true;
    } else {
        QDialog::reject();
    }
}

}  // namespace corvalence::gui
