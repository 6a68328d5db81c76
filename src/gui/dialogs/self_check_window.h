#pragma once

#include <QDialog>

#include "core/self_check.h"
#include "gui/support/help.h"

namespace corvalence::gui {

/// "Application file integrity check." and "Help file integrity check.": a warning with what to do about it.
class SelfCheckWindow : public QDialog {
  public:
    /// `topic` of the help: "applicationcheck" or "helpcheck".
    SelfCheckWindow(const core::SelfCheckWarning& warning, const OpenHelp& openHelp, const QString& topic,
                    QWidget* parent = nullptr);
};

}  // namespace corvalence::gui
