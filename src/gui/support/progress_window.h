#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <functional>

#include "gui/support/event_pump.h"
#include "platform/user_interface.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace corvalence::gui {

/// A window of work that may be going on; to reject it is to cancel the work.
class WorkWindow : public QDialog {
  public:
    using QDialog::QDialog;

    virtual bool isAtWork() const = 0;
};

/// The window of long work: bar, file, remaining files and bytes, and Cancel, which Escape and closing mean
/// as well. It comes up only where the work lasts, and blocks the other windows from the beginning on.
class ProgressWindow : public WorkWindow {
  public:
    ProgressWindow(const QString& title, QWidget* parent);

    bool isAtWork() const override { return !isCancelled_; }
    bool isCancelled() const noexcept { return isCancelled_; }
    /// Shows what changed since the last time and handles events; comes up once the work has lasted.
    void step(EventPump& pump);

    void setBar(int position);
    void setNote(const QString& text);
    void setSubject(const std::string& path, std::uint64_t remaining);

    void reject() override;

  private:
    void draw();

    QLabel* subject_;
    QLabel* remaining_;
    QLabel* note_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QElapsedTimer sinceBegin_;
    QElapsedTimer sinceStep_;
    int position_ = -1;  // nobody knows how much there is to do
    QString noteText_;
    std::string path_;
    std::uint64_t filesLeft_ = 0;
    bool hasFiles_ = false;
    bool isChanged_ = false;
    bool isCancelled_ = false;
};

/// Work that is shown in such a window.
class WindowProgress : public platform::Progress {
  public:
    /// `isEnding`: whether the work is to be cancelled, whatever the window says.
    WindowProgress(
        const std::string& title, QWidget* parent, std::function<bool()> isEnding = [] { return false; });
    ~WindowProgress() override;

    bool cancelled() override;
    void bar(std::uint32_t position) override { window_.setBar(static_cast<int>(position)); }
    void label(const std::string& text) override;
    void file(const std::string& path, std::uint64_t remaining) override {
        window_.setSubject(path, remaining);
    }

  private:
    ProgressWindow window_;
    std::function<bool()> isEnding_;
    EventPump pump_;
};

}  // namespace corvalence::gui
