#pragma once

#include <QDialog>
#include <QDialogButtonBox>

#include "gui/support/help.h"

namespace corvalence::gui {

/// Has the dialog come up wide enough for its title to be read.
void giveTitleRoom(QDialog& dialog);

/// F1 anywhere in the window presses its Help button.
void pressByHelpKey(QAbstractButton& help, QWidget& window);

/// The row of buttons of a dialog, with the names "okButton", "cancelButton" and so on. OK accepts and is the
/// default, Cancel rejects, Help opens the topic, and so does F1. The title, which is set before, gets room.
QDialogButtonBox* makeButtons(QDialog& dialog, QDialogButtonBox::StandardButtons buttons,
                              const OpenHelp& openHelp, const QString& topic);

/// OK and Help of a dialog that only tells something. OK has the keys: some desktops put Help first.
QDialogButtonBox* makeTellingButtons(QDialog& dialog, const OpenHelp& openHelp, const QString& topic);

}  // namespace corvalence::gui
