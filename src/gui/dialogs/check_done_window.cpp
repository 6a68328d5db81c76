#include "gui/dialogs/check_done_window.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QtMath>
#include <algorithm>

#include "gui/support/dialog_buttons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kMostLines = 24;    // that are seen at once
constexpr int kCharacters = 110;  // of a line, before it is broken

QString textOf(const std::vector<CheckDoneWindow::Part>& parts) {
    QString text;
    for (const CheckDoneWindow::Part& part : parts) {
        if (!text.isEmpty()) text += QLatin1Char('\n');
        if (!part.name.isEmpty()) text += part.name + QLatin1Char('\n');
        for (const components::Count& count : part.outcome.counts)
            text += shownCount(count.count, count.text) + QLatin1Char('\n');
        for (const components::Remark& remark : part.outcome.remarks)
            text += shownCount(remark.count, remark.text) + QLatin1Char('\n');
    }
    return text.trimmed();
}

/// What the text takes, its lines whole, and the bar that would come with less.
QSize roomFor(const QPlainTextEdit& totals) {
    const QFontMetrics metrics = totals.fontMetrics();
    const int lines = std::min(totals.blockCount(), kMostLines);
    const int text = metrics.size(0, totals.toPlainText()).width();
    const int around = 2 * (totals.frameWidth() + qCeil(totals.document()->documentMargin()));
    const int bar = totals.verticalScrollBar()->sizeHint().width();
    return {std::min(text, metrics.averageCharWidth() * kCharacters) + bar + around,
            metrics.lineSpacing() * (lines + 1) + around};
}

}  // namespace

CheckDoneWindow::CheckDoneWindow(const QString& title, const std::vector<Part>& parts, bool mayCancel,
                                 QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("checkDoneWindow"));
    setWindowTitle(title);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Complete."), this));
    auto* totals = new QPlainTextEdit(textOf(parts), this);
    totals->setObjectName(QStringLiteral("totalsText"));
    totals->setAccessibleName(QStringLiteral("Complete."));
    totals->setReadOnly(true);
    totals->setTabChangesFocus(true);
    totals->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    totals->setMinimumSize(roomFor(*totals));
    layout->addWidget(totals, 1);
    auto* buttons = new QDialogButtonBox(this);
    if (mayCancel)
        buttons->addButton(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    QPushButton* view = buttons->addButton(QStringLiteral("&View Report"), QDialogButtonBox::AcceptRole);
    view->setObjectName(QStringLiteral("viewReportButton"));
    view->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    view->setFocus();
    giveTitleRoom(*this);
}

}  // namespace corvalence::gui
