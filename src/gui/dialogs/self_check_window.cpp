#include "gui/dialogs/self_check_window.h"

#include <QVBoxLayout>

#include "gui/dialogs/alarm_row.h"
#include "gui/support/dialog_buttons.h"

namespace corvalence::gui {

namespace {

constexpr int kWidth = 110;  // characters of a line

}  // namespace

SelfCheckWindow::SelfCheckWindow(const core::SelfCheckWarning& warning, const OpenHelp& openHelp,
                                 const QString& topic, QWidget* parent)
    : QDialog(parent) {
    setObjectName(QStringLiteral("selfCheckWindow"));
    setWindowTitle(shown(warning.title));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(makeAlarmRow(warning.heading, *this));
    for (const std::string_view line : warning.lines) {
        auto* label = new QLabel(shownLines(line), this);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setMinimumWidth(label->fontMetrics().averageCharWidth() * kWidth);
        layout->addWidget(label);
    }
    layout->addStretch();
    layout->addWidget(makeTellingButtons(*this, openHelp, topic));
}

}  // namespace corvalence::gui
