#pragma once

#include <QWidget>

#include "schedule/schedule_settings.h"

class QSpinBox;

namespace corvalence::gui {

/// Hours, minutes and seconds in a row, each with its range: "hoursSpin", "minutesSpin", "secondsSpin".
class IntervalFields : public QWidget {
  public:
    explicit IntervalFields(const schedule::CheckInterval& interval, QWidget* parent = nullptr);

    schedule::CheckInterval interval() const;

  private:
    QSpinBox* addField(const QString& label, const char* name, int highest, int value);

    QSpinBox* hours_;
    QSpinBox* minutes_;
    QSpinBox* seconds_;
};

}  // namespace corvalence::gui
