#pragma once

#include "platform/access_control.h"

namespace corvalence::platform::linux_system {

/// Works on files that LinuxFileSystem opened, and needs the process file system at /proc.
class LinuxAccessControl : public AccessControl {
  public:
    void copyProtection(const std::string& from, File& to) override;
    void setAttributes(File& file, std::uint32_t attributes) override;
    std::unique_ptr<PinnedFolder> pinFolderOf(const std::string& file, std::string& name) override;
};

}  // namespace corvalence::platform::linux_system
