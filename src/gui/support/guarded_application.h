#pragma once

#include <QApplication>

namespace corvalence::gui {

/// The toolkit's application object, which lets nothing that a handler throws get into the toolkit: it is
/// told instead.
class GuardedApplication : public QApplication {
  public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
};

}  // namespace corvalence::gui
