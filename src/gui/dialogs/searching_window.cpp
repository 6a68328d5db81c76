#include "gui/dialogs/searching_window.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/dialogs/elided_label.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

const std::string kTitle = "Searching...";

class SearchProgress : public platform::Progress {
  public:
    explicit SearchProgress(SearchingWindow& window) : window_(window) { window_.show(); }
    ~SearchProgress() override { window_.endSearch(); }

    bool cancelled() override {
        pump_.pump();
        return window_.isCancelled();
    }
    void label(const std::string& text) override { window_.setFound(text); }
    void item(const platform::WorkItem& item) override {
        if (pump_.isDue()) window_.setFile(item.name);
    }

  private:
    SearchingWindow& window_;
    EventPump pump_;
};

}  // namespace

SearchingWindow::SearchingWindow(QWidget* parent)
    : WorkWindow(parent),
      count_(new QLabel(this)),
      size_(new QLabel(this)),
      file_(new ElidedLabel({}, this)) {
    setObjectName(QStringLiteral("searchingWindow"));
    setWindowTitle(QString::fromStdString(kTitle));
    setWindowModality(Qt::ApplicationModal);
    count_->setObjectName(QStringLiteral("countLabel"));
    size_->setObjectName(QStringLiteral("sizeLabel"));
    file_->setObjectName(QStringLiteral("fileLabel"));
    file_->setMinimumWidth(file_->fontMetrics().averageCharWidth() * 64);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    proceed_ = buttons->addButton(QStringLiteral("&Proceed"), QDialogButtonBox::AcceptRole);
    proceed_->setObjectName(QStringLiteral("proceedButton"));
    proceed_->setEnabled(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &SearchingWindow::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SearchingWindow::reject);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* row : std::initializer_list<QWidget*>{count_, size_, file_, buttons})
        layout->addWidget(row);
    setFound(files::foundText(0, 0));
}

void SearchingWindow::setFound(const std::string& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    count_->setText(shown(std::string_view(text).substr(0, end)));
    size_->setText(shown(std::string_view(text).substr(std::min(end + 1, text.size()))));
}

void SearchingWindow::setFile(std::string_view path) {
    file_->setText(shown(path));
}

bool SearchingWindow::proceed(const files::AddSearch& found) {
    setFound(files::foundText(found.files, found.bytes));
    setFile({});
    proceed_->setEnabled(found.canProceed);
    if (found.canProceed) {
        proceed_->setDefault(true);
        proceed_->setFocus();
    }
    return exec() == Accepted;
}

void SearchingWindow::reject() {
    if (isSearching_) {
        isCancelled_ = true;
    } else {
        QDialog::reject();
    }
}

std::unique_ptr<platform::Progress> SearchingInterface::openProgress(const std::string& title) {
    if (title != kTitle) return inner_.openProgress(title);
    return std::make_unique<SearchProgress>(window_);
}

std::optional<files::AddReport> searchAndAdd(QDialog& dialog, store::Vault& vault,
                                             store::OpenDatabaseContext& database,
                                             const std::string& location, const files::Criteria& criteria,
                                             files::AddOptions options) {
    platform::Platform& machine = vault.platform;
    SearchingInterface user(machine.ui, &dialog);
    platform::Platform system{machine.files,   machine.access, machine.volumes, machine.status,
                              machine.process, machine.types,  machine.clock,   machine.settings,
                              machine.sound,   user,           machine.paths};
    store::Vault searching{system, vault.configuration, vault.working, vault.session};
    bool hasProceeded = false;
    options.proceed = [&](const files::AddSearch& found) {
        hasProceeded = user.window().proceed(found);
        if (hasProceeded) dialog.hide();
        return hasProceeded;
    };
    try {
        files::AddReport report =
            files::AddPipeline(searching, database).addLocation(location, criteria, options);
        const bool isOver = !report.cancelled && !report.refused && !report.declined;
        if (hasProceeded || isOver) return report;
    } catch (const std::runtime_error& failure) {  // base::FileFailure, files::DatabaseChanged
        machine.ui.message(platform::Icon::Stop, failure.what());
    }
    return std::nullopt;
}

}  // namespace corvalence::gui
