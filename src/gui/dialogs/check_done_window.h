#pragma once

#include <QDialog>
#include <vector>

#include "components/component_check.h"

namespace corvalence::gui {

/// What a check of baselines came to, before its report is shown.
class CheckDoneWindow : public QDialog {
  public:
    struct Part {
        QString name;  // of the component; empty where there is but one
        const components::CheckOutcome& outcome;
    };

    /// `title`: that of the check. Where it `mayCancel` the user may still go back on the check.
    CheckDoneWindow(const QString& title, const std::vector<Part>& parts, bool mayCancel, QWidget* parent);
};

}  // namespace corvalence::gui
