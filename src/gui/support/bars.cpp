#include "gui/support/bars.h"

#include <QApplication>
#include <QPointer>
#include <QProgressBar>
#include <QStyle>
#include <QStyleFactory>

namespace corvalence::gui {

namespace {

bool areThemed = false;

QStyle* plainStyle() {
    static QPointer<QStyle> style;
    if (!style) {
        style = QStyleFactory::create(QStringLiteral("fusion"));
        style->setParent(qApp);
    }
    return style;
}

}  // namespace

bool hasThemeStyle() {
    const QString name = QApplication::style()->name();
    return name.compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0 &&
           name.compare(QLatin1String("windows"), Qt::CaseInsensitive) != 0;
}

void setThemedBars(bool isThemed) {
    areThemed = isThemed;
}

QProgressBar* makeBar() {
    auto* bar = new QProgressBar;
    if (hasThemeStyle() && !areThemed) bar->setStyle(plainStyle());
    return bar;
}

}  // namespace corvalence::gui
