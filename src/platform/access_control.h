#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/file_system.h"

namespace corvalence::platform {

/// A folder held fast: while it lives, `path()` leads to the same folder, whatever happens to the names on
/// the way.
class PinnedFolder {
  public:
    virtual ~PinnedFolder() = default;
    /// Path by which the folder is reached as long as this object lives, with a closing separator.
    virtual const std::string& path() const noexcept = 0;
    /// The folder's own path with every link on the way resolved, with a closing separator.
    virtual const std::string& resolvedPath() const noexcept = 0;
};

/// Owners, rights and attributes of files. All calls throw base::FileFailure.
class AccessControl {
  public:
    virtual ~AccessControl() = default;

    /// Gives `to` the owner, group, mode, access list and extended attributes that `from` has. `to` is open
    /// and was made by this program. Set-id bits and security labels belong to it; what the caller has no
    /// right to give is a failure, as a file that lost its protection must not take the other's place.
    virtual void copyProtection(const std::string& from, File& to) = 0;

    /// Sets the attribute word of an open file. On Linux only the owner's write bit follows it (0x01 set: no
    /// write); the rest of the mode stays.
    virtual void setAttributes(File& file, std::uint32_t attributes) = 0;

    /// Holds the folder of `file`, every link on the way resolved, the file's own name included: the last
    /// link's target decides the folder and `name` takes its name. AccessDenied where a link on the way
    /// belongs to neither the administrator nor the caller; FileNotFound where a folder is missing.
    virtual std::unique_ptr<PinnedFolder> pinFolderOf(const std::string& file, std::string& name) = 0;
};

}  // namespace corvalence::platform
