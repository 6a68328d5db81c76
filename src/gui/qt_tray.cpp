#include "gui/qt_tray.h"

#include <QTimer>

#include "gui/support/icons.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using schedule::TrayPicture;

constexpr qint64 kFirstLook = 3000;  // milliseconds

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
    menu_.setObjectName(QStringLiteral("trayMenu"));
    QObject::connect(&menu_, &QMenu::aboutToShow, [this] { menuOpens(); });
}

QtTray::~QtTray() = default;

/// Desktops read the menu before it is opened, and give it the room that it took then.
void QtTray::fillMenu() {
    if (!callbacks.menu) return;
    const auto items = callbacks.menu();
    if (items.data() == filled_) return;
    filled_ = items.data();
    menu_.clear();
    for (QMenu* old : menu_.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly))
        old->deleteLater();
    std::map<std::string_view, QMenu*> subMenus;
    for (const schedule::TrayMenuItem& item : items) {
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

/// Some desktops ask for a menu as soon as they see an icon. That is nobody's click, and must not hold the
/// checks.
void QtTray::menuOpens() {
    if (callbacks.openMenu && sinceShown_.isValid() && sinceShown_.hasExpired(kFirstLook))
        callbacks.openMenu();
}

void QtTray::apply(QSystemTrayIcon& shownIcon, const schedule::TrayIcon& wanted) {
    const QString name = trayPictureName(wanted);
    QIcon& picture = pictures_[name];
    if (picture.isNull()) picture = icon(name);
    shownIcon.setIcon(picture);
    const QString caption = shown(wanted.caption);
    if (shownIcon.toolTip() != caption) shownIcon.setToolTip(caption);
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
    if (id == schedule::kMainIcon) {
        fillMenu();
        sinceShown_.start();
    }
    entry->show();
    icons_[id] = std::move(entry);
}

void QtTray::modify(int id, const schedule::TrayIcon& icon) {
    const auto entry = icons_.find(id);
    if (entry == icons_.end()) {
        add(id, icon);
    } else {
        apply(*entry->second, icon);
        if (id == schedule::kMainIcon) fillMenu();
    }
}

void QtTray::remove(int id) {
    icons_.erase(id);
}

}  // namespace corvalence::gui
