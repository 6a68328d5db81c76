#include "gui/dialogs/background_tab.h"

#include <QCheckBox>
#include <QVBoxLayout>

namespace corvalence::gui {

BackgroundTab::BackgroundTab(const shell::BackgroundPage& page, const OpenHelp& openHelp)
    : SheetTab(QStringLiteral("Checking behind an icon"), QStringLiteral("background"), openHelp,
               QStringLiteral("configbackground")),
      starts_(addBox(body(), "startBox", QStringLiteral("&Background checking at system start up."),
                     page.startsWithSession)),
      progress_(addBox(body(), "trayProgressBox", QStringLiteral("&Enable status tray progress bar."),
                       page.showsProgress)),
      animated_(addBox(body(), "animatedBox", QStringLiteral("&Animated icon."), page.isAnimated)) {}

shell::BackgroundPage BackgroundTab::page() const {
    return {starts_->isChecked(), progress_->isChecked(), animated_->isChecked()};
}

}  // namespace corvalence::gui
