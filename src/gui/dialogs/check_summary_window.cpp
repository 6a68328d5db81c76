#include "gui/dialogs/check_summary_window.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "gui/dialogs/elided_label.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

struct CountRow {
    std::string_view label;
    std::uint32_t files::CheckCounts::*count;
};

constexpr CountRow kCounts[] = {
    {"Total number of files listed:", &files::CheckCounts::listed},
    {"Files Checked:", &files::CheckCounts::checked},
    {"Files Unchecked:", &files::CheckCounts::unchecked},
    {"Files Changed:", &files::CheckCounts::changed},
    {"Files Identical:", &files::CheckCounts::identical},
};

}  // namespace

CheckSummaryWindow::CheckSummaryWindow(const files::CheckSummary& summary, const OpenHelp& openHelp,
                                       QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("checkSummaryWindow"));
    setWindowTitle(QStringLiteral("Checking Summary."));
    auto* layout = new QVBoxLayout(this);
    addPathLines(*layout, summary.database);
    auto* form = new QFormLayout;
    addValueRow(*form, "Checked:", shown(summary.checkedAt));
    for (const CountRow& row : kCounts)
        addValueRow(*form, row.label, QString::number(summary.counts.*row.count));
    layout->addLayout(form);
    if (!summary.backupFailure.empty()) {
        auto* failure = new QLabel(shownLines(summary.backupFailure));
        failure->setObjectName(QStringLiteral("backupFailureLabel"));
        failure->setTextFormat(Qt::PlainText);
        failure->setWordWrap(true);
        layout->addWidget(failure);
    }
    layout->addWidget(makeTellingButtons(*this, openHelp, QStringLiteral("checksummary")));
}

}  // namespace corvalence::gui
