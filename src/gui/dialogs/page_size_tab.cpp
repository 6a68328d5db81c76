#include "gui/dialogs/page_size_tab.h"

#include <QSpinBox>

namespace corvalence::gui {

PageSizeTab::PageSizeTab(const shell::PageSizePage& page, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("Rows on one page of a database list or a report"), QStringLiteral("grid"),
               openHelp, QStringLiteral("configpagesize")),
      rows_(addNumber(body(), "pageSizeSpin", QStringLiteral("&Rows on a page:"), {},
                      settings::key::kPageSize, page.rows)) {}

shell::PageSizePage PageSizeTab::page() const {
    return {rows_->value()};
}

}  // namespace corvalence::gui
