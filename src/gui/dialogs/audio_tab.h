#pragma once

#include <vector>

#include "gui/dialogs/path_edit.h"
#include "gui/dialogs/sheet_tab.h"

namespace corvalence::gui {

/// "Audio.": which sounds warn; a button beside each plays it.
class AudioTab : public SheetTab {
  public:
    AudioTab(const shell::AudioPage& page, platform::Sound& sound, const OpenHelp& openHelp);

    shell::AudioPage page() const;

  private:
    void addCountdown(const shell::AudioPage& page);
    void addWarnings(const shell::AudioPage& page);
    /// A button that plays, at the end of the row.
    void addPlay(QLayout& row, const char* name, const QString& what, std::function<void()> play);
    void browse();

    platform::Sound& sound_;
    QRadioButton* silent_ = nullptr;
    std::vector<QRadioButton*> warnings_;  // by shell::WarningChoice
    PathEdit* file_ = nullptr;
};

}  // namespace corvalence::gui
