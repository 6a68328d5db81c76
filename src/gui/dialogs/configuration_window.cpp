#include "gui/dialogs/configuration_window.h"

#include <QDialogButtonBox>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

#include "gui/dialogs/audio_tab.h"
#include "gui/dialogs/background_tab.h"
#include "gui/dialogs/backup_tab.h"
#include "gui/dialogs/email_tab.h"
#include "gui/dialogs/interface_tab.h"
#include "gui/dialogs/page_size_tab.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr QSize kAround(40, 60);  // that a window leaves of the screen, its frame among it

}  // namespace

ConfigurationWindow::ConfigurationWindow(const shell::SheetPages& pages, const SheetMeans& means,
                                         QWidget* parent)
    : QDialog(parent), tabs_(new QTabWidget(this)) {
    setObjectName(QStringLiteral("configurationWindow"));
    setWindowTitle(shown(shell::kSheetTitle));
    tabs_->setObjectName(QStringLiteral("tabs"));
    addTabs(pages, means);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_, 1);
    layout->addWidget(
        makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Cancel, means.openHelp, {}));
    // By itself a window takes two thirds of a screen at the most, and fields would scroll on a low one.
    resize(sizeHint().boundedTo(screen()->availableSize() - kAround));
}

void ConfigurationWindow::addTabs(const shell::SheetPages& pages, const SheetMeans& means) {
    backup_ = new BackupTab(pages.backup, means.paths, means.openHelp);
    audio_ = new AudioTab(pages.audio, means.sound, means.openHelp);
    background_ = new BackgroundTab(pages.background, means.openHelp);
    pageSize_ = new PageSizeTab(pages.pageSize, means.openHelp);
    look_ = new InterfaceTab(pages.look, means.openHelp);
    email_ = new EmailTab(pages.email, means.sendsThroughServer, means.openHelp);
    tabs_->addTab(backup_, QStringLiteral("Backup."));
    tabs_->addTab(audio_, QStringLiteral("Audio."));
    tabs_->addTab(background_, QStringLiteral("Background Checking."));
    tabs_->addTab(pageSize_, QStringLiteral("Page Size."));
    tabs_->addTab(look_, QStringLiteral("Interface."));
    tabs_->addTab(email_, QStringLiteral("Email."));
}

shell::SheetPages ConfigurationWindow::pages() const {
    return {backup_->page(),   audio_->page(), background_->page(),
            pageSize_->page(), look_->page(),  email_->page()};
}

void ConfigurationWindow::setStoredFolder(const std::string& folder) {
    backup_->setStoredFolder(folder);
}

int ConfigurationWindow::current() const {
    return tabs_->currentIndex();
}

void ConfigurationWindow::setCurrent(int page) {
    tabs_->setCurrentIndex(page);
}

bool ConfigurationPrompt::show(shell::SheetPages& pages) {
    ConfigurationWindow window(pages, means_, parent_);
    window.setCurrent(current_);
    if (!storedFolder_) storedFolder_ = pages.backup.folder;
    window.setStoredFolder(*storedFolder_);
    const bool isConfirmed = window.exec() == QDialog::Accepted;
    current_ = window.current();
    if (isConfirmed) pages = window.pages();
    return isConfirmed;
}

}  // namespace corvalence::gui
