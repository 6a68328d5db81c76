#include "gui/dialogs/permissions_changed_window.h"

#include <QLabel>
#include <QVBoxLayout>

#include "gui/dialogs/alarm_row.h"
#include "gui/dialogs/folder_permissions_window.h"
#include "gui/dialogs/guard_model.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"
#include "gui/views/list_table.h"

namespace corvalence::gui {

PermissionsChangedWindow::PermissionsChangedWindow(const shell::GuardCheck& check, const OpenHelp& openHelp,
                                                   QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("permissionsChangedWindow"));
    setWindowTitle(shown(shell::kGuardTitle));
    auto* layout = new QVBoxLayout(this);
    addAlarm(*layout, check.result == shell::GuardResult::Damaged);
    addRows(*layout, "previousList", shell::kGuardBefore, check.before);
    const ListTable* now = addRows(*layout, "nowList", shell::kGuardNow, check.now.rows);
    layout->addWidget(makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp,
                                  QStringLiteral("permissionschanged")));
    widenToColumns(*this, *now);
}

void PermissionsChangedWindow::addAlarm(QVBoxLayout& layout, bool isDamaged) {
    layout.addLayout(makeAlarmRow(shell::kGuardAlarm, *this));
    if (!isDamaged) return;
    auto* damage = new QLabel(
        QStringLiteral("The stored state of the folder is damaged, or sealed with another password."), this);
    damage->setObjectName(QStringLiteral("damageLabel"));
    damage->setWordWrap(true);
    layout.addWidget(damage);
}

ListTable* PermissionsChangedWindow::addRows(QVBoxLayout& layout, const char* name, std::string_view label,
                                             const std::vector<shell::GuardRow>& rows) {
    auto* model = new GuardModel(this);
    model->setRows(rows);
    ListTable* list = makeGuardList(*model, name, shown(label), *this);
    list->fitColumns();
    auto* text = new QLabel(shown(label), this);
    text->setBuddy(list);
    layout.addWidget(text);
    layout.addWidget(list, 1);
    return list;
}

}  // namespace corvalence::gui
