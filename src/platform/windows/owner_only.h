#pragma once

#include <windows.h>

#include <string>

#include "platform/windows/handle.h"

namespace corvalence::platform::windows_system {

/// The rights that the program's own files and folders are made with: everything for their owner, the
/// administrators and the system, nothing for others, nothing handed down from the folder above.
class OwnerOnly {
  public:
    /// Throws std::system_error where the system cannot tell who runs the program.
    OwnerOnly();

    SECURITY_ATTRIBUTES forFile() const noexcept { return attributesOf(file_); }
    /// What is made in the folder by others gets the same rights.
    SECURITY_ATTRIBUTES forFolder() const noexcept { return attributesOf(folder_); }

  private:
    using Descriptor = LocalMemory<PSECURITY_DESCRIPTOR>;
    static SECURITY_ATTRIBUTES attributesOf(const Descriptor& descriptor) noexcept {
        return {sizeof(SECURITY_ATTRIBUTES), descriptor.get(), FALSE};
    }

    Descriptor file_;
    Descriptor folder_;
};

}  // namespace corvalence::platform::windows_system
