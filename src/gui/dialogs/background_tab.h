#pragma once

#include "gui/dialogs/sheet_tab.h"

namespace corvalence::gui {

/// "Background Checking.": start with the session, and what the tray icon shows.
class BackgroundTab : public SheetTab {
  public:
    BackgroundTab(const shell::BackgroundPage& page, const OpenHelp& openHelp);

    shell::BackgroundPage page() const;

  private:
    QCheckBox* starts_;
    QCheckBox* progress_;
    QCheckBox* animated_;
};

}  // namespace corvalence::gui
