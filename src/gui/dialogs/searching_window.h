#pragma once

#include "files/add_pipeline.h"
#include "gui/support/event_pump.h"
#include "gui/support/progress_window.h"
#include "platform/user_interface.h"

class QLabel;
class QPushButton;

namespace corvalence::gui {

class ElidedLabel;

/// "Searching...": what a search for files to be added has found so far, and once it is over whether to add
/// them. Cancel ends the search, or adds nothing.
class SearchingWindow : public WorkWindow {
  public:
    explicit SearchingWindow(QWidget* parent);

    void setFound(const std::string& text);
    void setFile(std::string_view path);
    bool isAtWork() const override { return isSearching_ && !isCancelled_; }
    bool isCancelled() const noexcept { return isCancelled_; }

    void endSearch() { isSearching_ = false; }
    /// Waits for the user's answer; "Proceed" can be pressed only where the files can be added.
    bool proceed(const files::AddSearch& found);

    void reject() override;

  private:
    QLabel* count_;
    QLabel* size_;
    ElidedLabel* file_;
    QPushButton* proceed_ = nullptr;
    bool isSearching_ = true;
    bool isCancelled_ = false;
};

/// The user of an add command, whose search is shown in a SearchingWindow; all else goes to `inner`.
class SearchingInterface : public platform::UserInterface {
  public:
    SearchingInterface(platform::UserInterface& inner, QWidget* parent) : inner_(inner), window_(parent) {}

    SearchingWindow& window() noexcept { return window_; }

    void message(platform::Icon icon, const std::string& text) override { inner_.message(icon, text); }
    bool ask(platform::Icon icon, const std::string& text, bool unattended) override {
        return inner_.ask(icon, text, unattended);
    }
    std::unique_ptr<platform::Progress> openProgress(const std::string& title) override;
    void status(int pane, const std::string& text) override { inner_.status(pane, text); }

  private:
    platform::UserInterface& inner_;
    SearchingWindow window_;
};

/// Searches below `location` and adds what is found, with `dialog` out of sight while files are added.
/// Nothing where the search was cancelled, the user did not proceed, or it failed, which was told: the dialog
/// stays then, unless files were being added already.
std::optional<files::AddReport> searchAndAdd(QDialog& dialog, store::Vault& vault,
                                             store::OpenDatabaseContext& database,
                                             const std::string& location, const files::Criteria& criteria,
                                             files::AddOptions options);

}  // namespace corvalence::gui
