#include "gui/dialogs/interval_fields.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

namespace corvalence::gui {

namespace {

constexpr int kMostHours = 24;
constexpr int kMost = 59;

}  // namespace

IntervalFields::IntervalFields(const schedule::CheckInterval& interval, QWidget* parent) : QWidget(parent) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    hours_ = addField(QStringLiteral("&Hours"), "hoursSpin", kMostHours, interval.hours);
    minutes_ = addField(QStringLiteral("M&inutes"), "minutesSpin", kMost, interval.minutes);
    seconds_ = addField(QStringLiteral("Secon&ds"), "secondsSpin", kMost, interval.seconds);
    layout->addStretch();
}

QSpinBox* IntervalFields::addField(const QString& label, const char* name, int highest, int value) {
    auto* field = new QSpinBox(this);
    field->setObjectName(QLatin1String(name));
    field->setRange(0, highest);
    field->setValue(value);
    auto* text = new QLabel(label, this);
    text->setBuddy(field);
    layout()->addWidget(field);
    layout()->addWidget(text);
    return field;
}

schedule::CheckInterval IntervalFields::interval() const {
    return {hours_->value(), minutes_->value(), seconds_->value()};
}

}  // namespace corvalence::gui
