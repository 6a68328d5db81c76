#include "gui/dialogs/criteria_window.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include "gui/dialogs/backup_choices.h"
#include "gui/dialogs/criteria_groups.h"
#include "gui/dialogs/folder_field.h"
#include "gui/dialogs/radio_column.h"
#include "gui/dialogs/searching_window.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {

namespace {

constexpr auto kButtons = QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help;
constexpr int kCombinationHeight = 620;

QCheckBox* addBox(QLayout& layout, const char* text, const char* name) {
    auto* box = new QCheckBox(QLatin1String(text));
    box->setObjectName(QLatin1String(name));
    layout.addWidget(box);
    return box;
}

/// What of a group the keyboard begins with; where it does not take part yet, the box that has it do so.
QWidget* firstField(CriteriaGroupBox& group) {
    if (group.isCheckable()) return &group;
    QWidget* field = group.nextInFocusChain();
    while (field != &group && (!group.isAncestorOf(field) || (field->focusPolicy() & Qt::TabFocus) == 0))
        field = field->nextInFocusChain();
    return field;
}

/// Keeps what is typed in a window from starting its work a second time while it is going on.
class AtWork {
  public:
    explicit AtWork(bool& flag) : flag_(flag) { flag_ = true; }
    ~AtWork() { flag_ = false; }
    AtWork(const AtWork&) = delete;
    AtWork& operator=(const AtWork&) = delete;

  private:
    bool& flag_;
};

}  // namespace

CriteriaWindow::CriteriaWindow(store::Vault& vault, store::OpenDatabaseContext& database,
                               const CriteriaCommand& command, const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), vault_(vault), database_(database), command_(command) {
    setObjectName(QStringLiteral("criteriaWindow"));
    setWindowTitle(shown(command.title));
    auto* layout = new QVBoxLayout(this);
    addGroups(*layout);
    addLocation(*layout);
    if (command.adds) addNotifyBoxes(*layout);
    layout->addWidget(makeButtons(*this, kButtons, openHelp, shown(command.topic)));
    (groups_.empty() ? location_ : firstField(*groups_.front()))->setFocus();
}

void CriteriaWindow::addGroups(QVBoxLayout& layout) {
    const QString verb = command_.adds ? QStringLiteral("add") : QStringLiteral("remove");
    if (const auto group = groupOf(command_.kind)) {
        groups_.push_back(makeCriteriaGroup(*group, verb));
        layout.addWidget(groups_.back());
    }
    if (command_.kind != CriteriaKind::Combination) return;
    layout.addWidget(new QLabel(command_.adds ? QStringLiteral("Add all files which are:")
                                              : QStringLiteral("Remove all files which are:")));
    auto* inside = new QWidget;
    auto* column = new QVBoxLayout(inside);
    for (const files::CriteriaGroup group : files::kCriteriaGroups) {
        CriteriaGroupBox* box = makeCriteriaGroup(group, verb);
        box->setCheckable(true);
        box->setChecked(false);
        groups_.push_back(box);
        column->addWidget(box);
    }
    auto* area = new QScrollArea;
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(inside);
    area->setMinimumWidth(inside->sizeHint().width() + area->verticalScrollBar()->sizeHint().width());
    layout.addWidget(area, 1);
    resize(sizeHint().width(), kCombinationHeight);
}

void CriteriaWindow::addLocation(QVBoxLayout& layout) {
    if (command_.kind == CriteriaKind::Location) {
        layout.addWidget(new QLabel(
            command_.adds ? QStringLiteral("Add to the database all the files which are located in:")
                          : QStringLiteral("Remove from the database all the files which are located in:")));
    } else {
        auto* located = new QRadioButton(QStringLiteral("&Which are located in"));
        located->setObjectName(QStringLiteral("locatedButton"));
        located->setChecked(true);
        layout.addWidget(located);
    }
    // Files are removed by the beginning of their paths: "/srv/a/" does not mean "/srv/ab".
    location_ = new FolderField(vault_.platform.paths.separator, !command_.adds);
    layout.addWidget(location_);
    layout.addWidget(new QLabel(QStringLiteral("Enter * for any location.")));
}

void CriteriaWindow::addNotifyBoxes(QVBoxLayout& layout) {
    notifyListed_ = addBox(layout, "Notify if files have been listed previously.", "notifyListedBox");
    notifyFailed_ = addBox(layout, "Notify if files cannot be added.", "notifyFailedBox");
    notifyFailed_->setChecked(true);
}

files::CriteriaForm CriteriaWindow::form() const {
    files::CriteriaForm form;
    form.location = location_->text();
    for (const CriteriaGroupBox* box : groups_) {
        box->read(form);
        if (box->takesPart()) form.groups.insert(box->group());
    }
    return form;
}

std::optional<files::FormFault> CriteriaWindow::findFault(const files::CriteriaForm& form) const {
    if (auto fault = files::findFault(form)) return fault;
    return command_.adds ? files::findAddLocationFault(vault_.platform, form.location)
                         : files::findRemoveLocationFault(form.location);
}

void CriteriaWindow::showFault(const files::FormFault& fault) {
    vault_.platform.ui.message(platform::Icon::Stop, fault.text);
    if (fault.field == files::FormField::Location) location_->setFocus();
    for (CriteriaGroupBox* box : groups_)
        if (QWidget* field = box->widgetOf(fault.field)) field->setFocus();
}

void CriteriaWindow::accept() {
    if (isAtWork_) return;
    const AtWork atWork(isAtWork_);
    const files::CriteriaForm filled = form();
    if (const auto fault = findFault(filled)) {
        showFault(*fault);
        return;
    }
    if (command_.adds ? add(filled) : remove(filled)) QDialog::accept();
}

bool CriteriaWindow::add(const files::CriteriaForm& form) {
    files::AddOptions options;
    options.notifyListed = notifyListed_->isChecked();
    options.notifyFailed = notifyFailed_->isChecked();
    added_ = searchAndAdd(*this, vault_, database_, files::addLocation(form.location, vault_.platform.paths),
                          files::criteriaOf(form), std::move(options));
    return added_.has_value();
}

bool CriteriaWindow::remove(const files::CriteriaForm& form) {
    platform::UserInterface& ui = vault_.platform.ui;
    bool isDeclined = false;
    files::RemovePipeline pipeline(vault_, database_, [&](std::uint64_t count) {
        const std::string question = files::removeQuestion(count, database_.path());
        isDeclined = !ui.ask(platform::Icon::Warning, question);
        return !isDeclined;
    });
    const files::Criteria criteria = files::criteriaOf(form);
    const bool isAll = form.location == files::kAnyLocation && form.groups.empty();
    try {
        removed_ = isAll ? pipeline.removeAll() : pipeline.removeMatching(form.location, criteria);
    } catch (const std::runtime_error& failure) {  // base::FileFailure, files::DatabaseChanged
        ui.message(platform::Icon::Stop, failure.what());
        return false;
    }
    if (isDeclined || (removed_->cancelled && removed_->removed == 0)) removed_.reset();
    return removed_.has_value();
}

AddAllWindow::AddAllWindow(store::Vault& vault, store::OpenDatabaseContext& database,
                           const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent), vault_(vault), database_(database) {
    setObjectName(QStringLiteral("addAllWindow"));
    setWindowTitle(QStringLiteral("Add all files to a database."));
    auto* layout = new QVBoxLayout(this);
    // As long as they are, they have to be broken to fit on a screen.
    const auto textOf = [](const BackupChoice& choice) {
        std::string text(choice.text);
        if (const std::size_t at = text.find(" File restoration enabled. Secure"); at != std::string::npos)
            text.replace(at, 1, "\n ");
        return text;
    };
    backups_ = addRadioButtons(*layout, *this, "backupButton", kAllFilesBackups, textOf, 0);
    auto* note = new QLabel(QStringLiteral(
        "If you have a large number of files on your system, backing up every file could take a considerable "
        "length of time."));
    note->setWordWrap(true);
    layout->addWidget(note);
    notifyFailed_ = addBox(*layout, "&Notify if files cannot be added.", "notifyFailedBox");
    layout->addStretch(1);
    layout->addWidget(makeButtons(*this, kButtons, openHelp, QStringLiteral("addall")));
}

void AddAllWindow::accept() {
    if (isAtWork_) return;
    const AtWork atWork(isAtWork_);
    files::AddOptions options;
    options.notifyFailed = notifyFailed_->isChecked();
    options.backups = kAllFilesBackups[static_cast<std::size_t>(backups_->checkedId())].backups;
    added_ = searchAndAdd(*this, vault_, database_, std::string(files::kAnyLocation), {}, std::move(options));
    if (added_) QDialog::accept();
}

}  // namespace corvalence::gui
