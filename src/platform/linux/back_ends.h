#pragma once

#include <memory>

#include "platform/linux/extended_attributes.h"
#include "platform/linux/linux_access_control.h"
#include "platform/linux/linux_clock.h"
#include "platform/linux/linux_file_system.h"
#include "platform/linux/linux_process.h"
#include "platform/linux/linux_registry.h"
#include "platform/linux/linux_system_status.h"
#include "platform/linux/linux_volumes.h"
#include "platform/linux/mime_file_types.h"
#include "platform/linux/posix_access_lists.h"
#include "platform/linux/smtp_mail.h"
#include "platform/linux/systemd_services.h"
#include "platform/linux/trash_folders.h"

namespace corvalence::platform::linux_system {

/// What every program needs of the system, made together once in its main.
struct BackEnds {
    LinuxFileSystem files;
    LinuxAccessControl access;
    LinuxVolumes volumes;
    LinuxSystemStatus status;
    LinuxProcess process;
    MimeFileTypes types;
    LinuxClock clock;
    ExtendedAttributes streams;
    SystemdServices services{files};
    LinuxRegistry registry{files};
    PosixAccessLists accessLists;
    TrashFolders trash{files, [this] { return trashPlaces(volumes); }};
    std::shared_ptr<SmtpMail> mail = std::make_shared<SmtpMail>(files, clock);

    BackEnds() = default;
    BackEnds(const BackEnds&) = delete;
    BackEnds& operator=(const BackEnds&) = delete;
};

}  // namespace corvalence::platform::linux_system
