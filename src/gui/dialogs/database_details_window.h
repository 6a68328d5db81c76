#pragma once

#include <QDialog>

#include "files/database_details.h"
#include "gui/support/help.h"

namespace corvalence::gui {

/// "Database Details."
class DatabaseDetailsWindow : public QDialog {
  public:
    DatabaseDetailsWindow(const files::DatabaseDetails& details, platform::Clock& clock,
                          const OpenHelp& openHelp, QWidget* parent);
};

}  // namespace corvalence::gui
