#include "gui/dialogs/elided_label.h"

#include <QFormLayout>
#include <QHelpEvent>
#include <QStylePainter>
#include <QToolTip>
#include <QVBoxLayout>
#include <QtMath>

#include "files/file_texts.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kCharacters = 92;  // that are always to be seen: a line of a path

}  // namespace

ElidedLabel::ElidedLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    // Whole pixels that hold it all: a text that is rounded down loses its middle.
    const QFontMetricsF metrics(font());
    const qreal widest = metrics.horizontalAdvance(QLatin1Char('0')) * kCharacters;
    setMinimumWidth(qCeil(std::min(metrics.horizontalAdvance(text), widest)) + 1);
}

bool ElidedLabel::fits() const {
    return whole_.isEmpty() && fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const QString line = fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
    painter.drawItemText(contentsRect(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), palette(),
                         isEnabled(), line, QPalette::WindowText);
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    const QString tip = fits() ? QString() : (whole_.isEmpty() ? text() : whole_).toHtmlEscaped();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
    return true;
}

void addPathLines(QVBoxLayout& layout, std::string_view path) {
    const char* name = "pathLabel";
    for (const std::string& line : files::pathLines(path)) {
        if (line.empty()) break;
        auto* label = new ElidedLabel(shown(line));
        label->setObjectName(QLatin1String(name));
        label->setWholeText(shown(path));
        layout.addWidget(label);
        name = "pathLabelMore";
    }
}

void addValueRow(QFormLayout& form, std::string_view label, const QString& value) {
    auto* field = new QLabel(value);
    field->setObjectName(QStringLiteral("valueLabel%1").arg(form.rowCount()));
    field->setTextFormat(Qt::PlainText);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    form.addRow(shown(label), field);
}

}  // namespace corvalence::gui
