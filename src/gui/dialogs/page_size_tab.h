#pragma once

#include "gui/dialogs/sheet_tab.h"

namespace corvalence::gui {

/// "Page Size.": rows on a page of a list or a report.
class PageSizeTab : public SheetTab {
  public:
    PageSizeTab(const shell::PageSizePage& page, const OpenHelp& openHelp);

    shell::PageSizePage page() const;

  private:
    QSpinBox* rows_;
};

}  // namespace corvalence::gui
