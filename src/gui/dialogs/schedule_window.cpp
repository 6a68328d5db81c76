#include "gui/dialogs/schedule_window.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "base/file_failure.h"
#include "gui/dialogs/interval_fields.h"
#include "gui/dialogs/schedule_model.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "gui/views/list_table.h"

namespace corvalence::gui {

namespace {

using schedule::CheckReaction;

constexpr int kContinuous = 0;
constexpr int kStandard = 1;
constexpr int kDelete = 0;
constexpr int kMove = 1;
constexpr int kListCharacters = 110;  // width of the list

QRadioButton* addRadio(QButtonGroup& group, QLayout& layout, int id, const char* name, const QString& text) {
    auto* button = new QRadioButton(text);
    button->setObjectName(QLatin1String(name));
    group.addButton(button, id);
    layout.addWidget(button);
    return button;
}

}  // namespace

ScheduleWindow::ScheduleWindow(schedule::ScheduleDialog& dialog, platform::UserInterface& ui,
                               const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), dialog_(dialog), ui_(ui) {
    setObjectName(QStringLiteral("scheduleWindow"));
    setWindowTitle(QStringLiteral("Database checking schedule."));
    auto* layout = new QVBoxLayout(this);
    addList(*layout);
    addEntry(*layout);
    addInterval(*layout);
    addReaction(*layout);
    layout->addWidget(makeButtons(*this,
                                  QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help,
                                  openHelp, QStringLiteral("schedule")));
    refill();
    takeFields();
    // With nothing to look at yet there is something to add.
    if (model_->rowCount() == 0) entry_->setFocus();
}

void ScheduleWindow::addList(QVBoxLayout& layout) {
    model_ = new ScheduleModel(this);
    list_ = new ListTable(this);
    list_->setObjectName(QStringLiteral("scheduleList"));
    list_->setAccessibleName(QStringLiteral("Scheduled databases"));
    list_->setModel(model_);
    list_->setEmptyText(QStringLiteral("No database is scheduled."));
    list_->setMinimumWidth(list_->fontMetrics().averageCharWidth() * kListCharacters);
    damage_ = new QLabel(this);
    damage_->setObjectName(QStringLiteral("damageLabel"));
    damage_->setWordWrap(true);
    drop_ = new QPushButton(QStringLiteral("Remove da&maged lines"), this);
    drop_->setObjectName(QStringLiteral("dropButton"));
    drop_->setAutoDefault(false);
    auto* remove = new QPushButton(QStringLiteral("&Remove"), this);
    remove->setObjectName(QStringLiteral("removeButton"));
    remove->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(damage_, 1);
    buttons->addWidget(drop_);
    buttons->addStretch();
    buttons->addWidget(remove);
    layout.addWidget(list_, 1);
    layout.addLayout(buttons);
    connect(remove, &QPushButton::clicked, this, [this] { removeSelected(); });
    connect(drop_, &QPushButton::clicked, this, [this] { change([this] { dialog_.dropDamaged(); }); });
}

void ScheduleWindow::addEntry(QVBoxLayout& layout) {
    auto* group = new QGroupBox(QStringLiteral("Add Database"), this);
    auto* row = new QHBoxLayout(group);
    entry_ = new QComboBox(group);
    entry_->setObjectName(QStringLiteral("databaseCombo"));
    entry_->setAccessibleName(QStringLiteral("Database to add"));
    entry_->setEditable(true);
    entry_->setInsertPolicy(QComboBox::NoInsert);
    entry_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* add = new QPushButton(QStringLiteral("&Add"), group);
    add->setObjectName(QStringLiteral("addButton"));
    add->setAutoDefault(false);
    row->addWidget(entry_, 1);
    row->addWidget(add);
    layout.addWidget(group);
    connect(add, &QPushButton::clicked, this, [this] { addDatabase(); });
}

void ScheduleWindow::addInterval(QVBoxLayout& layout) {
    auto* group = new QGroupBox(QStringLiteral("Check Every"), this);
    auto* row = new QVBoxLayout(group);
    interval_ = new IntervalFields(dialog_.settings.interval, group);
    row->addWidget(interval_);
    layout.addWidget(group);
}

void ScheduleWindow::addReaction(QVBoxLayout& layout) {
    const schedule::ScheduleSettings& settings = dialog_.settings;
    reaction_ = new QButtonGroup(this);
    addRadio(*reaction_, layout, kContinuous, "continuousRadio",
             QStringLiteral("Contin&uous checking  [ produce log file ]."));
    restore_ = new QCheckBox(QStringLiteral("&Enable Auto Restore."), this);
    restore_->setObjectName(QStringLiteral("autoRestoreBox"));
    restore_->setChecked(settings.autoRestore);
    auto* below = new QVBoxLayout;
    below->setContentsMargins(fontMetrics().height() * 2, 0, 0, 0);
    below->addWidget(restore_);
    auto* farBelow = new QVBoxLayout;
    farBelow->setContentsMargins(fontMetrics().height() * 2, 0, 0, 0);
    changed_ = new QButtonGroup(this);
    addRadio(*changed_, *farBelow, kDelete, "deleteRadio", QStringLiteral("De&lete changed files."));
    addRadio(*changed_, *farBelow, kMove, "moveRadio",
             QStringLiteral("Mo&ve changed files to the 'Changed Files' folder."));
    below->addLayout(farBelow);
    layout.addLayout(below);
    addRadio(*reaction_, layout, kStandard, "standardRadio",
             QStringLiteral("&Standard checking  [ prompt on file change and completion ]."));
    reaction_->button(settings.reaction == CheckReaction::Continuous ? kContinuous : kStandard)
        ->setChecked(true);
    changed_->button(settings.movesChanged ? kMove : kDelete)->setChecked(true);
    connect(reaction_, &QButtonGroup::idToggled, this, [this] { takeFields(); });
    connect(restore_, &QCheckBox::toggled, this, [this] { takeFields(); });
}

void ScheduleWindow::refill() {
    model_->setRows(dialog_.rows());
    list_->fitColumns();
    entry_->clear();
    for (const std::string& database : dialog_.entries())
        entry_->addItem(shown(database));
    entry_->setCurrentIndex(-1);
    const bool isDamaged = dialog_.isTorn() || !dialog_.damaged().empty();
    damage_->setVisible(isDamaged);
    drop_->setVisible(isDamaged);
    damage_->setText(dialog_.isTorn()
                         ? QStringLiteral("The end of the schedule is damaged and cannot be read.")
                         : QStringLiteral("Lines of the schedule that name no database: %1.")
                               .arg(dialog_.damaged().size()));
}

void ScheduleWindow::takeFields() {
    schedule::ScheduleSettings& settings = dialog_.settings;
    settings.interval = interval_->interval();
    settings.reaction =
        reaction_->checkedId() == kContinuous ? CheckReaction::Continuous : CheckReaction::Standard;
    settings.autoRestore = restore_->isChecked();
    settings.movesChanged = changed_->checkedId() == kMove;
    restore_->setEnabled(settings.canAutoRestore());
    for (QAbstractButton* button : changed_->buttons())
        button->setEnabled(settings.canChooseChanged());
}

void ScheduleWindow::change(const std::function<void()>& act) {
    try {
        act();
    } catch (const base::FileFailure& failure) {
        ui_.message(platform::Icon::Stop, failure.what());
    }
    refill();
}

void ScheduleWindow::addDatabase() {
    const QString text = entry_->currentText();
    // What is shown need not be the path's bytes: those of the entry count.
    const int row = entry_->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    const std::string chosen = row < 0 ? bytesOf(text) : dialog_.entries()[static_cast<std::size_t>(row)];
    schedule::AddToSchedule result = schedule::AddToSchedule::NothingEntered;
    change([&] { result = dialog_.add(chosen); });
    if (result != schedule::AddToSchedule::Added) entry_->setEditText(text);
}

void ScheduleWindow::removeSelected() {
    std::vector<std::size_t> selected;
    std::vector<std::string> chosen;
    for (const int row : list_->selectedRows()) {
        selected.push_back(static_cast<std::size_t>(row));
        chosen.push_back(dialog_.rows()[selected.back()].location);
    }
    change([&] {
        for (const std::string& path : dialog_.remove(selected)) {
            if (std::find(chosen.begin(), chosen.end(), path) == chosen.end())
                ui_.message(
                    platform::Icon::Information,
                    path + " was removed as well, as its path begins with the path of a selected database.");
        }
    });
}

void ScheduleWindow::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && (focusWidget() == entry_ || focusWidget() == entry_->lineEdit())) {
        addDatabase();
        return;
    }
    QDialog::keyPressEvent(event);
}

void ScheduleWindow::accept() {
    takeFields();
    if (dialog_.store()) QDialog::accept();
}

}  // namespace corvalence::gui
