#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "gui/schedule_commands.h"
#include "gui/workspace.h"
#include "listed_recycle_bin.h"
#include "listed_registry.h"
#include "listed_services.h"
#include "scripted_access_lists.h"
#include "scripted_mail.h"
#include "world.h"

namespace corvalence::gui::test {

/// A tray without a desktop: what its icons are.
class ShownTray : public schedule::Tray {
  public:
    std::map<int, schedule::TrayIcon> icons;
    std::vector<std::string> captions;  // of the main icon, one after the other

    std::function<void(const std::string&)> onCaption = [](const std::string&) {};

    void add(int id, const schedule::TrayIcon& icon) override { modify(id, icon); }
    void modify(int id, const schedule::TrayIcon& icon) override {
        icons[id] = icon;
        if (id != schedule::kMainIcon || (!captions.empty() && captions.back() == icon.caption)) return;
        captions.push_back(icon.caption);
        onCaption(icon.caption);
    }
    void remove(int id) override { icons.erase(id); }
};

/// The main window on a machine with an installation, before its commands.
class Desk {
  public:
    corvalence::test::World world;
    corvalence::test::ListedRecycleBin bin;
    corvalence::test::ListedServices services;
    corvalence::test::ListedRegistry registry;
    corvalence::test::ScriptedAccessLists accessLists{world.machine.system.accessLists};
    components::Machine machine{world.machine.system.streams, bin, services, registry, accessLists};
    Frame frame;
    Workspace work{world.platform, machine, world.run(), frame, {}};

    void trigger(shell::Command command) { frame.actions().action(command)->trigger(); }
};

}  // namespace corvalence::gui::test
