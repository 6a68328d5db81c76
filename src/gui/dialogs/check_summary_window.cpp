#include "gui/dialogs/check_summary_window.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "gui/dialogs/elided_label.h"
#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

struct CountRow {
    const char* label;
    const char* name;
    std::uint32_t files::CheckCounts::*count;
};

constexpr CountRow kCounts[] = {
    {"Total number of files listed:", "listedLabel", &files::CheckCounts::listed},
    {"Files Checked:", "checkedLabel", &files::CheckCounts::checked},
    {"Files Unchecked:", "uncheckedLabel", &files::CheckCounts::unchecked},
    {"Files Changed:", "changedLabel", &files::CheckCounts::changed},
    {"Files Identical:", "identicalLabel", &files::CheckCounts::identical},
};

void addRow(QFormLayout& form, const char* label, const char* name, const QString& text) {
    auto* value = new QLabel(text);
    value->setObjectName(QLatin1String(name));
    value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form.addRow(QLatin1String(label), value);
}

}  // namespace

CheckSummaryWindow::CheckSummaryWindow(const files::CheckSummary& summary, const OpenHelp& openHelp,
                                       QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("checkSummaryWindow"));
    setWindowTitle(QStringLiteral("Checking Summary."));
    auto* layout = new QVBoxLayout(this);
    addPathLines(*layout, summary.database);
    auto* form = new QFormLayout;
    addRow(*form, "Checked:", "timeLabel", shown(summary.checkedAt));
    for (const CountRow& row : kCounts)
        addRow(*form, row.label, row.name, QString::number(summary.counts.*row.count));
    layout->addLayout(form);
    if (!summary.backupFailure.empty()) {
        auto* failure = new QLabel(shownLines(summary.backupFailure));
        failure->setObjectName(QStringLiteral("backupFailureLabel"));
        failure->setTextFormat(Qt::PlainText);
        failure->setWordWrap(true);
        layout->addWidget(failure);
    }
    layout->addWidget(makeButtons(*this, QDialogButtonBox::Ok | QDialogButtonBox::Help, openHelp,
                                  QStringLiteral("checksummary")));
}

}  // namespace corvalence::gui
