#include "gui/command_actions.h"

#include <QActionGroup>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using shell::CommandForm;

QString textOf(std::string_view text) {
    return shown(text).trimmed();
}

/// Behind a picture nothing but the tip tells whether "All Files" are to be added or removed.
QString said(const shell::CommandRow& row, std::string_view text) {
    QString said = textOf(text);
    if (row.toolBar == shell::ToolBar::AddFiles || row.toolBar == shell::ToolBar::RemoveFiles)
        said.prepend(shown(shell::menuText(row.menu)) + QStringLiteral(": "));
    return said.remove(QLatin1Char('&'));
}

void setText(QAction& action, const shell::CommandRow& row, std::string_view text) {
    const QString tip = said(row, text);
    const QKeySequence keys = action.shortcut();
    action.setText(textOf(text));
    action.setStatusTip(tip);
    action.setToolTip(
        keys.isEmpty() ? tip : QStringLiteral("%1 (%2)").arg(tip, keys.toString(QKeySequence::NativeText)));
}

QAction* makeAction(const shell::CommandRow& row, QObject* parent) {
    auto* action = new QAction(parent);
    action->setObjectName(QStringLiteral("command-%1").arg(static_cast<int>(row.command)));
    if (!row.icon.empty()) action->setIcon(icon(shown(row.icon)));
    if (!row.shortcut.empty())
        action->setShortcut(QKeySequence::fromString(shown(row.shortcut), QKeySequence::PortableText));
    setText(*action, row, row.text);
    action->setCheckable(row.form != CommandForm::Plain);
    return action;
}

}  // namespace

CommandActions::CommandActions(QObject* parent) : QObject(parent) {
    auto* modes = new QActionGroup(this);
    auto* sizes = new QActionGroup(this);
    for (const shell::CommandRow& row : shell::commandRows()) {
        QAction* action = makeAction(row, this);
        if (row.form == CommandForm::Mode) modes->addAction(action);
        if (row.form == CommandForm::Size) sizes->addAction(action);
        connect(action, &QAction::triggered, this, [this, command = row.command] { trigger(command); });
        actions_.push_back(action);
    }
}

void CommandActions::trigger(shell::Command command) {
    const auto handler = handlers_.find(command);
    if (handler != handlers_.end()) dispatch(handler->second);
}

void CommandActions::update(const shell::FrameState& state) {
    for (const shell::CommandRow& row : shell::commandRows())
        action(row.command)->setEnabled(shell::mayRun(row.command, state));
    const auto check = shell::Command::CheckDatabase;
    setText(*action(check), shell::commandRow(check), shell::commandText(check, state.mode));
    action(shell::commandOf(state.mode))->setChecked(true);
}

}  // namespace corvalence::gui
