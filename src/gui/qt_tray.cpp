#include "gui/qt_tray.h"

#include <QTimer>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using schedule::TrayPicture;

void apply(QSystemTrayIcon& shownIcon, const schedule::TrayIcon& wanted) {
    shownIcon.setIcon(icon(trayPictureName(wanted)));
    const QString caption = shown(wanted.caption);
    if (shownIcon.toolTip() != caption) shownIcon.setToolTip(caption);
}

}  // namespace

QString trayPictureName(const schedule::TrayIcon& icon) {
    switch (icon.picture) {
        case TrayPicture::Animation:
            return QStringLiteral("tray-%1").arg(icon.frame);
        case TrayPicture::Progress:
            return QStringLiteral("progress-%1").arg(icon.frame);
        case TrayPicture::Warning:
            return QStringLiteral("tray-warning");
        case TrayPicture::Paused:
            break;
    }
    return QStringLiteral("tray-paused");
}

QtTray::QtTray() {
    QObject::connect(&menu_, &QMenu::aboutToShow, [this] { fillMenu(); });
    // A menu without an entry is not opened at all by some desktops.
    menu_.addAction(QStringLiteral("Open Corvalence"));
}

QtTray::~QtTray() = default;

void QtTray::fillMenu() {
    menu_.clear();
    qDeleteAll(menu_.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly));
    if (!callbacks.openMenu) return;
    std::map<std::string_view, QMenu*> subMenus;
    for (const schedule::TrayMenuItem& item : callbacks.openMenu()) {
        QMenu* menu = &menu_;
        if (!item.menu.empty()) {
            QMenu*& subMenu = subMenus[item.menu];
            if (subMenu == nullptr) subMenu = menu_.addMenu(shown(item.menu));
            menu = subMenu;
        }
        QAction* action = menu->addAction(shown(item.text).trimmed());
        // Handled once the menu is gone: a command may open a window, or end the icon.
        QObject::connect(action, &QAction::triggered, action, [this, command = item.command] {
            QTimer::singleShot(0, &menu_, [this, command] { callbacks.command(command); });
        });
    }
}

void QtTray::add(int id, const schedule::TrayIcon& icon) {
    auto entry = std::make_unique<QSystemTrayIcon>();
    if (id == schedule::kMainIcon) {
        entry->setContextMenu(&menu_);
        QObject::connect(entry.get(), &QSystemTrayIcon::activated, [this](auto reason) {
            if (reason == QSystemTrayIcon::Trigger && callbacks.open)
                QTimer::singleShot(0, &menu_, [this] { callbacks.open(); });
        });
    }
    apply(*entry, icon);
    entry->show();
    icons_[id] = std::move(entry);
}

void QtTray::modify(int id, const schedule::TrayIcon& icon) {
    const auto entry = icons_.find(id);
    if (entry == icons_.end()) {
        add(id, icon);
    } else {
        apply(*entry->second, icon);
    }
}

void QtTray::remove(int id) {
    icons_.erase(id);
}

}  // namespace corvalence::gui
