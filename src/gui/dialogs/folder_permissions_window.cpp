#include "gui/dialogs/folder_permissions_window.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "base/file_failure.h"
#include "gui/dialogs/guard_model.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "gui/views/list_table.h"

namespace corvalence::gui {

namespace {

constexpr int kListCharacters = 140;
constexpr int kListLines = 9;
constexpr int kBesideList = 60;    // margins of a window, and a scroll bar
constexpr int kBesideWindow = 40;  // of the screen

}  // namespace

ListTable* makeGuardList(GuardModel& model, const char* name, const QString& spoken, QWidget& parent) {
    auto* list = new ListTable(&parent);
    list->setObjectName(QLatin1String(name));
    list->setAccessibleName(spoken);
    list->setModel(&model);
    const QFontMetrics metrics = list->fontMetrics();
    list->setMinimumSize(metrics.averageCharWidth() * kListCharacters, metrics.lineSpacing() * kListLines);
    return list;
}

void widenToColumns(QDialog& dialog, const ListTable& list) {
    const int widest = dialog.screen()->availableSize().width() - kBesideWindow;
    const QSize usual = dialog.sizeHint();
    dialog.resize(std::clamp(list.horizontalHeader()->length() + kBesideList, usual.width(),
                             std::max(usual.width(), widest)),
                  usual.height());
}

FolderPermissionsWindow::FolderPermissionsWindow(shell::FolderGuard& guard, shell::FolderState state,
                                                 platform::UserInterface& ui, const OpenHelp& openHelp,
                                                 QWidget* parent)
    : QDialog(parent), guard_(guard), state_(std::move(state)), ui_(ui) {
    setObjectName(QStringLiteral("folderPermissionsWindow"));
    setWindowTitle(shown(shell::kGuardTitle));
    auto* layout = new QVBoxLayout(this);
    addTexts(*layout);
    addList(*layout);
    QDialogButtonBox* buttons = makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp,
                                            QStringLiteral("folderpermissions"));
    auto* strengthen = buttons->addButton(QStringLiteral("&Strengthen"), QDialogButtonBox::ActionRole);
    strengthen->setObjectName(QStringLiteral("strengthenButton"));
    strengthen->setAutoDefault(false);
    connect(strengthen, &QPushButton::clicked, this, [this] { this->strengthen(); });
    layout->addWidget(buttons);
    showState();
    widenToColumns(*this, *list_);
}

void FolderPermissionsWindow::addTexts(QVBoxLayout& layout) {
    advice_ = new QLabel(shownLines(shell::kGuardAdvice), this);
    advice_->setObjectName(QStringLiteral("adviceLabel"));
    QFont font = advice_->font();
    font.setBold(true);
    advice_->setFont(font);
    advice_->setWordWrap(true);
    auto* introduction = new QLabel(shown(shell::kGuardIntroduction), this);
    introduction->setWordWrap(true);
    layout.addWidget(advice_);
    layout.addWidget(introduction);
}

void FolderPermissionsWindow::addList(QVBoxLayout& layout) {
    model_ = new GuardModel(this);
    list_ =
        makeGuardList(*model_, "permissionList", QStringLiteral("Accounts with access to the folder"), *this);
    layout.addWidget(list_, 1);
}

void FolderPermissionsWindow::showState() {
    model_->setRows(state_.rows);
    list_->fitColumns();
    advice_->setVisible(state_.isWeak());
}

void FolderPermissionsWindow::strengthen() {
    const shell::Strengthening done = guard_.strengthen();
    if (!done.failure.empty())
        ui_.message(platform::Icon::Stop, "The permissions could not be strengthened: " + done.failure);
    if (auto state = guard_.read()) {
        state_ = std::move(*state);
        showState();
    }
}

void FolderPermissionsWindow::accept() {
    try {
        guard_.accept(state_);
    } catch (const base::FileFailure& failure) {
        ui_.message(platform::Icon::Stop, failure.what());
        return;
    }
    QDialog::accept();
}

}  // namespace corvalence::gui
