#include "gui/dialogs/single_schedule_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "base/file_failure.h"
#include "gui/dialogs/interval_fields.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "schedule/schedule_dialog.h"
#include "store/database_index.h"

namespace corvalence::gui {

namespace {

using schedule::CheckReaction;

constexpr int kNotify = 0;
constexpr int kStandard = 1;
constexpr int kPathCharacters = 60;

}  // namespace

SingleScheduleWindow::SingleScheduleWindow(store::Vault& vault, std::string database,
                                           const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), vault_(vault), database_(std::move(database)) {
    setObjectName(QStringLiteral("singleScheduleWindow"));
    setWindowTitle(QStringLiteral("Schedule database checking."));
    auto* layout = new QVBoxLayout(this);
    addDatabase(*layout);
    addFields(*layout);
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("singleschedule")));
    layout->addStretch();
}

void SingleScheduleWindow::addDatabase(QVBoxLayout& layout) {
    path_ = new QLineEdit(shown(database_), this);
    path_->setObjectName(QStringLiteral("databaseEdit"));
    path_->setReadOnly(true);
    path_->setMinimumWidth(path_->fontMetrics().averageCharWidth() * kPathCharacters);
    auto* label = new QLabel(QStringLiteral("Da&tabase:"), this);
    label->setBuddy(path_);
    auto* browse = new QPushButton(QStringLiteral("&Browse"), this);
    browse->setObjectName(QStringLiteral("browseButton"));
    browse->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(path_, 1);
    row->addWidget(browse);
    layout.addLayout(row);
    connect(browse, &QPushButton::clicked, this, [this] { this->browse(); });
}

void SingleScheduleWindow::addFields(QVBoxLayout& layout) {
    const auto settings = schedule::ScheduleSettings::read(vault_.configuration);
    auto* group = new QGroupBox(QStringLiteral("Check Every"), this);
    auto* row = new QVBoxLayout(group);
    interval_ = new IntervalFields(settings.interval, group);
    row->addWidget(interval_);
    layout.addWidget(group);
    reaction_ = new QButtonGroup(this);
    const auto addRadio = [&](int id, const char* name, const QString& text) {
        auto* button = new QRadioButton(text, this);
        button->setObjectName(QLatin1String(name));
        reaction_->addButton(button, id);
        layout.addWidget(button);
    };
    addRadio(kNotify, "notifyRadio", QStringLiteral("&Notify only on file change [no prompts]."));
    addRadio(kStandard, "standardRadio",
             QStringLiteral("&Standard checking [prompt on completion of every check]."));
    reaction_->button(settings.reaction == CheckReaction::Continuous ? kNotify : kStandard)->setChecked(true);
    minimized_ = new QCheckBox(QStringLiteral("&Run minimized."), this);
    minimized_->setObjectName(QStringLiteral("minimizedBox"));
    layout.addWidget(minimized_);
}

void SingleScheduleWindow::browse() {
    const QString chosen = QFileDialog::getOpenFileName(this, windowTitle(), path_->text());
    if (chosen.isEmpty()) return;
    database_ = chosenPath(chosen);
    path_->setText(shown(database_));
}

bool SingleScheduleWindow::runsMinimized() const {
    return minimized_->isChecked();
}

void SingleScheduleWindow::accept() {
    try {
        if (!store::DatabaseIndex(vault_).findExact(database_)) {
            vault_.platform.ui.message(platform::Icon::Stop, database_ + " is not a valid database.");
            return;
        }
        schedule::scheduleDatabase(
            vault_, database_, interval_->interval(),
            reaction_->checkedId() == kNotify ? CheckReaction::Continuous : CheckReaction::Standard);
    } catch (const base::FileFailure& failure) {
        vault_.platform.ui.message(platform::Icon::Stop, failure.what());
        return;
    }
    QDialog::accept();
}

}  // namespace corvalence::gui
