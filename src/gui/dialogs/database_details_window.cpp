#include "gui/dialogs/database_details_window.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "gui/dialogs/elided_label.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

DatabaseDetailsWindow::DatabaseDetailsWindow(const files::DatabaseDetails& details, platform::Clock& clock,
                                             const OpenHelp& openHelp, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("databaseDetailsWindow"));
    setWindowTitle(QStringLiteral("Database Details."));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Database:"), this));
    addPathLines(*layout, details.path);
    auto* form = new QFormLayout;
    for (const files::DetailsLine& line : files::detailsLines(details, clock))
        addValueRow(*form, line.label, shown(line.value));
    layout->addLayout(form);
    layout->addWidget(makeTellingButtons(*this, openHelp, QStringLiteral("databasedetails")));
}

}  // namespace corvalence::gui
