#pragma once

#include <QWidget>

#include "shell/info_bars.h"

namespace corvalence::gui {

/// One of the thin bars below the list: a text, and where there is something to measure a bar in proportion
/// behind it. It is painted anew only where what it shows has changed.
class InfoBar : public QWidget {
  public:
    /// `name`: for those who cannot see it.
    explicit InfoBar(const QString& name, QWidget* parent = nullptr);

    void setContent(const shell::InfoBarContent& content);
    QString text() const { return text_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    shell::InfoBarContent content_;
    QString text_;
    int widest_ = 0;  // a bar that shrinks with its text makes its neighbours jump
};

}  // namespace corvalence::gui
