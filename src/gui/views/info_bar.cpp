#include "gui/views/info_bar.h"

#include <QPainter>

#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kMargin = 4;
constexpr int kBarOpacity = 70;  // of 255: the text on it stays as readable as beside it

}  // namespace

InfoBar::InfoBar(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void InfoBar::setContent(const shell::InfoBarContent& content) {
    if (content == content_) return;
    content_ = content;
    text_ = shown(content.text);
    setAccessibleDescription(text_);
    setToolTip(text_);
    const int width = fontMetrics().horizontalAdvance(text_);
    if (width > widest_) {
        widest_ = width;
        updateGeometry();
    }
    update();
}

QSize InfoBar::sizeHint() const {
    return QSize(widest_ + 4 * kMargin, fontMetrics().height() + 2 * kMargin);
}

void InfoBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QRect frame = rect().adjusted(1, 1, -2, -2);
    if (content_.percent) {
        QColor colour = palette().color(QPalette::Highlight);
        colour.setAlpha(kBarOpacity);
        const int width = frame.width() * static_cast<int>(*content_.percent) / 100;
        painter.fillRect(QRect(frame.topLeft(), QSize(width, frame.height())), colour);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(frame);
    painter.setPen(
        palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(frame.adjusted(kMargin, 0, -kMargin, 0), Qt::AlignVCenter | Qt::AlignLeft, text_);
}

}  // namespace corvalence::gui
