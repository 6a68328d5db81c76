#include "gui/dialogs/sheet_tab.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>

#include "gui/support/dialog_buttons.h"
#include "gui/support/icons.h"

namespace corvalence::gui {

namespace {

constexpr int kPictureSize = 32;
constexpr int kTallest = 34;  // lines of text, before the fields scroll

/// Fields that scroll where the window is too low for them; it is never too narrow.
class FieldArea : public QScrollArea {
  public:
    FieldArea(QWidget* fields, QWidget* parent) : QScrollArea(parent) {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setWidgetResizable(true);
        setWidget(fields);
        // The page's own ground shows through.
        viewport()->setAutoFillBackground(false);
        fields->setAutoFillBackground(false);
    }

    QSize sizeHint() const override {
        const int tallest = fontMetrics().lineSpacing() * kTallest;
        const QSize fields = widget()->sizeHint();
        return {fields.width() + verticalScrollBar()->sizeHint().width(), std::min(fields.height(), tallest)};
    }
    QSize minimumSizeHint() const override {
        return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(),
                fontMetrics().lineSpacing() * 4};
    }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest) updateGeometry();
        return QScrollArea::eventFilter(watched, event);
    }
};

/// The strip that all pages begin with.
QWidget* makeHeader(const QString& text, const QString& iconName, QWidget* parent) {
    auto* strip = new QFrame(parent);
    strip->setFrameShape(QFrame::StyledPanel);
    strip->setBackgroundRole(QPalette::Base);
    strip->setAutoFillBackground(true);
    auto* picture = new QLabel(strip);
    picture->setPixmap(icon(iconName).pixmap(QSize(kPictureSize, kPictureSize), parent->devicePixelRatioF()));
    auto* title = new QLabel(text, strip);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    title->setWordWrap(true);
    auto* row = new QHBoxLayout(strip);
    row->addWidget(picture);
    row->addWidget(title, 1);
    return strip;
}

}  // namespace

SheetTab::SheetTab(const QString& header, const QString& iconName, const OpenHelp& openHelp,
                   const QString& topic) {
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(makeHeader(header, iconName, this));
    auto* fields = new QWidget;
    auto* column = new QVBoxLayout(fields);
    body_ = new QVBoxLayout;
    column->addLayout(body_);
    column->addStretch();
    whole->addWidget(new FieldArea(fields, this), 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Help, this);
    buttons->button(QDialogButtonBox::Help)->setObjectName(topic + QStringLiteral("HelpButton"));
    buttons->button(QDialogButtonBox::Help)->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::helpRequested, this, [openHelp, topic] {
        if (openHelp) openHelp(topic);
    });
    pressByHelpKey(*buttons->button(QDialogButtonBox::Help), *this);
    whole->addWidget(buttons);
}

QVBoxLayout& SheetTab::addGroup(const QString& title) {
    auto* group = new QGroupBox(title, this);
    auto* column = new QVBoxLayout(group);
    body_->addWidget(group);
    return *column;
}

QCheckBox* SheetTab::addBox(QLayout& layout, const char* name, const QString& text, bool isChecked) {
    auto* box = new QCheckBox(text, this);
    box->setObjectName(QLatin1String(name));
    box->setChecked(isChecked);
    layout.addWidget(box);
    return box;
}

QRadioButton* SheetTab::addRadio(QLayout& layout, const char* name, const QString& text, bool isChecked) {
    auto* button = new QRadioButton(text, this);
    button->setObjectName(QLatin1String(name));
    button->setChecked(isChecked);
    layout.addWidget(button);
    return button;
}

QSpinBox* SheetTab::addNumber(QVBoxLayout& layout, const char* name, const QString& before,
                              const QString& behind, std::string_view key, int value) {
    const shell::EntryRange range = shell::entryRange(key);
    auto* field = new QSpinBox(this);
    field->setObjectName(QLatin1String(name));
    field->setRange(range.lowest, range.highest);
    field->setValue(value);
    auto* label = new QLabel(before, this);
    label->setBuddy(field);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(field);
    if (!behind.isEmpty()) row->addWidget(new QLabel(behind, this));
    row->addStretch();
    layout.addLayout(row);
    return field;
}

void SheetTab::addText(QVBoxLayout& layout, QLineEdit* field, const char* name, const QString& label) {
    field->setObjectName(QLatin1String(name));
    auto* text = new QLabel(label, this);
    text->setBuddy(field);
    auto* row = new QHBoxLayout;
    row->addWidget(text);
    row->addWidget(field, 1);
    layout.addLayout(row);
}

QPushButton* SheetTab::addBrowsed(QVBoxLayout& layout, QLineEdit* field, const char* name,
                                  const QString& label, const char* buttonName, const QString& buttonText) {
    addText(layout, field, name, label);
    auto* button = new QPushButton(buttonText, this);
    button->setObjectName(QLatin1String(buttonName));
    button->setAutoDefault(false);
    layout.itemAt(layout.count() - 1)->layout()->addWidget(button);
    return button;
}

}  // namespace corvalence::gui
