#pragma once

#include <functional>
#include <vector>

#include "platform/linux/systemd_bus.h"
#include "platform/linux/unit_files.h"
#include "platform/service_manager.h"

namespace corvalence::platform::linux_system {

/// The units of systemd as services: each one that has a unit file, by that file and its drop-ins; running or
/// not, and enabled or not, by the manager where it answers and else by the links on disk. Without a manager
/// the state is 0, as nobody knows it.
///
/// Started at boot means enabled (2), disabled means masked (4), all else is started on demand (3). A failure
/// that the unit answers with an action on the whole system is critical (3). What starts a unit of another
/// type than service (times, sockets, paths, what is mounted where) stands in the place of the command line.
class SystemdServices : public ServiceManager {
  public:
    explicit SystemdServices(FileSystem& files, std::vector<UnitFolder> folders = systemUnitFolders(),
                             std::function<Bus()> openBus = openSystemBus)
        : files_(files), folders_(std::move(folders)), openBus_(std::move(openBus)) {}

    std::vector<Service> services() override;

  private:
    FileSystem& files_;
    std::vector<UnitFolder> folders_;
    std::function<Bus()> openBus_;
};

}  // namespace corvalence::platform::linux_system
