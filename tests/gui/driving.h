#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>
#include <functional>
#include <memory>

namespace corvalence::gui::test {

/// Milliseconds in which what a test waits for comes on any machine, however much else that one has to do.
inline constexpr int kPatience = 60'000;

/// A widget by its object name; the test ends where there is none.
template <typename Widget>
Widget& find(QWidget& parent, const char* name) {
    auto* widget = parent.findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr) throw std::runtime_error(std::string("no widget named ") + name);
    return *widget;
}

/// Acts on the modal window that a call is about to open: as soon as one of the type is in front, and it is
/// time, `act` runs on it, once. The test fails, and whatever is in front is closed, where none comes within
/// `kPatience`, or where this object goes before.
template <typename Window>
class WhenShown {
  public:
    explicit WhenShown(
        std::function<void(Window&)> act, std::function<bool(Window&)> isTime = [](Window&) { return true; })
        : act_(std::move(act)), isTime_(std::move(isTime)) {
        since_.start();
        QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
        timer_.start(5);
    }
    ~WhenShown() {
        if (!wasShown_) ADD_FAILURE() << "the window did not come";
    }
    WhenShown(const WhenShown&) = delete;
    WhenShown& operator=(const WhenShown&) = delete;

    bool wasShown() const { return wasShown_; }

  private:
    void look() {
        QWidget* front = QApplication::activeModalWidget();
        if (auto* window = dynamic_cast<Window*>(front);
            window != nullptr && window->isVisible() && isTime_(*window)) {
            timer_.stop();
            wasShown_ = true;
            act_(*window);
        } else if (since_.elapsed() > kPatience) {
            timer_.stop();
            if (front != nullptr) front->close();
        }
    }

    std::function<void(Window&)> act_;
    std::function<bool(Window&)> isTime_;
    QTimer timer_;
    QElapsedTimer since_;
    bool wasShown_ = false;
};

/// Presses a button of the message box or question that a call is about to show; `text` gets what it says.
class Answer : public WhenShown<QMessageBox> {
  public:
    explicit Answer(QMessageBox::StandardButton button, std::string* text = nullptr)
        : WhenShown([button, text](QMessageBox& box) {
              if (text != nullptr) *text = box.text().toStdString();
              QAbstractButton* pressed = box.button(button);
              pressed != nullptr ? pressed->click() : box.reject();
          }) {}
};

/// Lets events be handled until `isDone`, at most `limit` milliseconds; whether it became true.
inline bool waitFor(const std::function<bool()>& isDone, int limit = kPatience) {
    QElapsedTimer since;
    since.start();
    while (!isDone() && since.elapsed() < limit)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return isDone();
}

}  // namespace corvalence::gui::test
