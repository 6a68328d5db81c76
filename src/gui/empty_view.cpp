#include "gui/empty_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

constexpr int kPictureSize = 96;
constexpr int kButtonIconSize = 32;
constexpr int kTitleScale = 2;

QLabel* makeLine(const char* name) {
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setAlignment(Qt::AlignCenter);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

EmptyView::EmptyView(const CommandActions& actions, QWidget* parent) : QWidget(parent) {
    picture_ = makeLine("modePicture");
    title_ = makeLine("modeTitle");
    QFont large = title_->font();
    large.setPointSize(large.pointSize() * kTitleScale);
    title_->setFont(large);
    purpose_ = makeLine("modePurpose");
    database_ = makeLine("openDatabase");
    buttons_ = new QWidget;
    auto* row = new QHBoxLayout(buttons_);
    row->addStretch();
    for (const shell::Command command :
         {shell::Command::CreateDatabase, shell::Command::OpenDatabase, shell::Command::CheckDatabase})
        row->addWidget(addButton(actions.action(command)));
    row->addStretch();
    auto* column = new QVBoxLayout(this);
    column->addStretch();
    for (QWidget* widget : std::initializer_list<QWidget*>{picture_, title_, purpose_, database_, buttons_})
        column->addWidget(widget);
    column->addStretch();
}

QToolButton* EmptyView::addButton(QAction* action) {
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setIconSize(QSize(kButtonIconSize, kButtonIconSize));
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

void EmptyView::show(shell::Mode mode, const std::string& database) {
    const shell::ModeRow& row = shell::modeRow(mode);
    picture_->setPixmap(icon(shown(shell::commandRow(shell::commandOf(mode)).icon))
                            .pixmap(QSize(kPictureSize, kPictureSize), devicePixelRatioF()));
    title_->setText(shown(shell::commandRow(shell::commandOf(mode)).text));
    purpose_->setText(shown(row.purpose));
    database_->setText(database.empty() ? QString() : QStringLiteral("Open database: ") + shown(database));
}

}  // namespace corvalence::gui
