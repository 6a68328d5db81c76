#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QFileIconProvider>
#include <QHash>
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

/// The text of a file's type by its path.
using TypeText = std::function<std::string(std::string_view path)>;

/// The window of long work: bar, file with its type, remaining files and bytes, counters, and Cancel, which
/// Escape and closing mean as well. It comes up only where the work lasts, and blocks the other windows from
/// the beginning on.
class ProgressWindow : public WorkWindow {
  public:
    ProgressWindow(const QString& title, TypeText typeText, QWidget* parent);

    bool isAtWork() const override { return !isCancelled_; }
    bool isCancelled() const noexcept { return isCancelled_; }
    /// Shows what changed since the last time and handles events; comes up once the work has lasted.
    void step(EventPump& pump);

    void setBar(int position);
    void setNote(const QString& text);
    void setItem(const platform::WorkItem& item);
    void watch(const platform::Counting* counting);

    void reject() override;

  private:
    void draw();
    void drawItem();
    void drawCounts();
    const QIcon& iconOf(const QString& path);

    QLabel* icon_;
    QLabel* subject_;
    QLabel* type_;
    QLabel* remaining_;
    QLabel* note_;
    QLabel* counts_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QElapsedTimer sinceBegin_;
    QElapsedTimer sinceStep_;
    int position_ = -1;  // nobody knows how much there is to do
    QString noteText_;
    std::string name_;  // of the item, which its view would not outlive
    platform::WorkItem item_;
    const platform::Counting* counting_ = nullptr;
    TypeText typeText_;
    QFileIconProvider icons_;
    QHash<QString, QIcon> iconBySuffix_;  // the system is asked once for each
    bool hasItem_ = false;
    bool isChanged_ = false;
    bool isCancelled_ = false;
};

/// Work that is shown in such a window.
class WindowProgress : public platform::Progress {
  public:
    /// `isEnding`: whether the work is to be cancelled, whatever the window says.
    WindowProgress(
        const std::string& title, QWidget* parent, std::function<bool()> isEnding = [] { return false; },
        TypeText typeText = [](std::string_view) { return std::string(); });
    ~WindowProgress() override;

    bool cancelled() override;
    void bar(std::uint32_t position) override { window_.setBar(static_cast<int>(position)); }
    void label(const std::string& text) override;
    void item(const platform::WorkItem& item) override { window_.setItem(item); }
    void watch(const platform::Counting* counting) override { window_.watch(counting); }

  private:
    ProgressWindow window_;
    std::function<bool()> isEnding_;
    EventPump pump_;
};

}  // namespace corvalence::gui
