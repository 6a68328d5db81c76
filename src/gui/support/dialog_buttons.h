#pragma once

#include <QDialog>
#include <QDialogButtonBox>

#include "gui/support/help.h"

namespace corvalence::gui {

/// The row of buttons of a dialog, with the names "okButton", "cancelButton" and so on. OK accepts and is the
/// default, Cancel rejects, Help opens the topic.
QDialogButtonBox* makeButtons(QDialog& dialog, QDialogButtonBox::StandardButtons buttons,
                              const OpenHelp& openHelp, const QString& topic);

}  // namespace corvalence::gui
