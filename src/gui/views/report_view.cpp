#include "gui/views/report_view.h"

#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

ReportView::ReportView(shell::ReportSession& session, QWidget* parent)
    : QWidget(parent), session_(session), model_(session) {
    setObjectName(QStringLiteral("reportView"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    addHeading(*layout);
    table_ = new ListTable(this);
    table_->setObjectName(QStringLiteral("reportTable"));
    table_->setModel(&model_);
    layout->addWidget(table_, 1);
    setFocusProxy(table_);
    refresh();
}

void ReportView::addHeading(QVBoxLayout& layout) {
    auto* heading = new QHBoxLayout;
    heading->setContentsMargins(6, 4, 6, 0);
    title_ = new QLabel(this);
    title_->setObjectName(QStringLiteral("reportTitle"));
    QFont bold = title_->font();
    bold.setBold(true);
    title_->setFont(bold);
    damage_ = new QLabel(this);
    damage_->setObjectName(QStringLiteral("damageLabel"));
    position_ = new QLabel(this);
    position_->setObjectName(QStringLiteral("positionLabel"));
    previous_ = addButton("previousButton", QStringLiteral("View Previous Report"), "page-previous");
    next_ = addButton("nextButton", QStringLiteral("View Next Report"), "page-next");
    connect(previous_, &QToolButton::clicked, this, [this] { showPrevious(); });
    connect(next_, &QToolButton::clicked, this, [this] { showNext(); });
    heading->addWidget(title_);
    heading->addSpacing(16);
    heading->addWidget(damage_, 1);
    heading->addWidget(previous_);
    heading->addWidget(position_);
    heading->addWidget(next_);
    layout.addLayout(heading);
}

QToolButton* ReportView::addButton(const char* name, const QString& text, const char* iconName) {
    auto* button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setIcon(icon(QLatin1String(iconName)));
    button->setText(text);
    button->setToolTip(text);
    button->setAccessibleName(text);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

void ReportView::refresh() {
    model_.refresh();
    const bool isShown = session_.isShown();
    title_->setText(isShown ? shown(session_.row().title) : QString());
    table_->setAccessibleName(title_->text());
    damage_->setText(isShown ? shown(session_.damageText()) : QString());
    position_->setText(isShown ? shown(session_.pageCaption()) : QString());
    table_->setEmptyText(isShown ? shown(session_.emptyText()) : QString());
    previous_->setEnabled(isShown && session_.hasPrevious());
    next_->setEnabled(isShown && session_.hasNext());
    if (!isShown) return;
    table_->scrollToTop();
    // Widths that the user has chosen stay from page to page.
    const bool isFitted = fitted_ == &session_.row();
    if (!isFitted) table_->fitColumns();
    fitted_ = model_.rowCount() > 0 || isFitted ? &session_.row() : nullptr;
}

void ReportView::showNext() {
    if (!session_.next()) return;
    refresh();
    if (onChanged) onChanged();
}

void ReportView::showPrevious() {
    if (!session_.previous()) return;
    refresh();
    if (onChanged) onChanged();
}

}  // namespace corvalence::gui
