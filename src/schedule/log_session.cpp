#include "schedule/log_session.h"

namespace corvalence::schedule {

namespace {

/// Remembers that the user has cancelled.
class Noticing : public platform::ForwardedProgress {
  public:
    using ForwardedProgress::ForwardedProgress;

    bool wasCancelled() const noexcept { return wasCancelled_; }

    bool cancelled() override { return wasCancelled_ = wasCancelled_ || ForwardedProgress::cancelled(); }

  private:
    bool wasCancelled_ = false;
};

}  // namespace

void LogSession::open() {
    view_.reset();
    platform::Platform& platform = vault_.platform;
    const auto window = platform.ui.openProgress("Analysing Log File...");
    Noticing progress(*window);
    view_ = std::make_unique<LogView>(
        platform.files, path_, alternative_ ? *alternative_ : vault_.session.key, vault_.session.chains.LogIV,
        LogView::Manner{!isWhole_, isDark_}, &progress);
    isCut_ = progress.wasCancelled();
}

void LogSession::load() {
    platform::UserInterface& ui = vault_.platform.ui;
    open();
    while (!view_->isValid() && !isCut_ &&
           ui.ask(platform::Icon::Warning, std::string(kAlternativePasswordQuestion))) {
        const auto password = askPassword_();
        if (!password) break;
        view_.reset();  // it holds on to the key
        alternative_ = std::make_unique<crypto::SessionKey>(password->view());
        open();
    }
    if (view_->truncated() > 0 && !isWhole_ &&
        ui.ask(platform::Icon::Information, std::string(kFullValuesQuestion))) {
        isWhole_ = true;
        open();
    }
    ui.status(0, "Ready");
}

}  // namespace corvalence::schedule
