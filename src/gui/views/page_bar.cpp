#include "gui/views/page_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

PageBar::PageBar(const QString& name, QWidget* parent) : QWidget(parent) {
    setAccessibleName(name);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    previous_ = addButton("previousPageButton", QStringLiteral("Previous page"), "page-previous");
    caption_ = new QLabel(QStringLiteral("Page: "));
    caption_->setObjectName(QStringLiteral("pageCaption"));
    next_ = addButton("nextPageButton", QStringLiteral("Next page"), "page-next");
    for (QWidget* widget : std::initializer_list<QWidget*>{previous_, caption_, next_})
        row->addWidget(widget);
    connect(previous_, &QToolButton::clicked, this, [this] { onPrevious(); });
    connect(next_, &QToolButton::clicked, this, [this] { onNext(); });
    setPage({}, false, false);
}

QToolButton* PageBar::addButton(const char* name, const QString& text, const char* iconName) {
    auto* button = new QToolButton;
    button->setObjectName(QLatin1String(name));
    button->setIcon(icon(QLatin1String(iconName)));
    button->setToolTip(text);
    button->setAccessibleName(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void PageBar::setPage(const std::string& caption, bool hasPrevious, bool hasNext) {
    caption_->setText(caption.empty() ? QStringLiteral("Page: ") : shown(caption));
    previous_->setEnabled(hasPrevious);
    next_->setEnabled(hasNext);
}

}  // namespace corvalence::gui
