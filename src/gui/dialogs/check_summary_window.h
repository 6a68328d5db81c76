#pragma once

#include <QDialog>

#include "files/check.h"
#include "gui/support/help.h"

namespace corvalence::gui {

/// "Checking Summary.": what a check of a File Contents database came to.
class CheckSummaryWindow : public QDialog {
  public:
    CheckSummaryWindow(const files::CheckSummary& summary, const OpenHelp& openHelp, QWidget* parent);
};

}  // namespace corvalence::gui
