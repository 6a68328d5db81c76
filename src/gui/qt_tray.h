#pragma once

#include <QElapsedTimer>
#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>
#include <map>
#include <memory>
#include <span>

#include "schedule/background_mode.h"

namespace corvalence::gui {

/// Icons in the desktop's status tray. A desktop that has none shows nothing; what was added meanwhile comes
/// up once there is one.
class QtTray : public schedule::Tray {
  public:
    struct Callbacks {
        std::function<void()> open;                                     // left button
        std::function<std::span<const schedule::TrayMenuItem>()> menu;  // as it stands now
        std::function<void()> openMenu;                                 // right button
        std::function<void(schedule::TrayCommand)> command;
    };

    QtTray();
    ~QtTray() override;

    /// To be set before an icon is added.
    Callbacks callbacks;

    static bool isAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

    void add(int id, const schedule::TrayIcon& icon) override;
    void modify(int id, const schedule::TrayIcon& icon) override;
    void remove(int id) override;

  private:
    void fillMenu();
    void menuOpens();
    void apply(QSystemTrayIcon& shownIcon, const schedule::TrayIcon& wanted);

    QMenu menu_;
    const schedule::TrayMenuItem* filled_ = nullptr;  // the first of the items that the menu shows
    QElapsedTimer sinceShown_;
    std::map<QString, QIcon> pictures_;  // drawn once, for an animation that never ends
    std::map<int, std::unique_ptr<QSystemTrayIcon>> icons_;
};

/// Name of the picture of an icon.
QString trayPictureName(const schedule::TrayIcon& icon);

}  // namespace corvalence::gui
