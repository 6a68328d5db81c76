#pragma once

#include "platform/access_control.h"

namespace corvalence::platform::windows_system {

/// Works on files that WindowsFileSystem made. What goes from one file to another is owner, group and access
/// list; named streams are contents and stay behind.
class WindowsAccessControl : public AccessControl {
  public:
    void copyProtection(const std::string& from, File& to) override;
    /// The bits of the word that a program may set: read only, hidden, system, archive, not indexed.
    void setAttributes(File& file, std::uint32_t attributes) override;
    std::unique_ptr<PinnedFolder> pinFolderOf(const std::string& file, std::string& name) override;
};

}  // namespace corvalence::platform::windows_system
