#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/windows/owner_only.h"

namespace corvalence::platform::windows_system {

/// Files by the system's own calls, which protect an open file by sharing modes: what is held by
/// openExclusive or createNew is closed to readers as well, but may be renamed and removed. One object serves
/// all threads.
class WindowsFileSystem : public FileSystem {
  public:
    std::unique_ptr<File> openShared(const std::string& path) override;
    /// A read-only attribute does not hinder, as it hinders no administrator on other systems.
    std::unique_ptr<File> openExclusive(const std::string& path) override;
    std::unique_ptr<File> createNew(const std::string& path) override;

    std::optional<FileStatus> status(const std::string& path, Follow follow) override;
    using FileSystem::list;
    std::vector<FolderEntry> list(const std::string& folder, Detail detail) override;

    /// Read-only files are renamed, replaced and removed as well.
    void rename(const std::string& from, const std::string& to) override;
    bool renameNew(const std::string& from, const std::string& to) override;
    bool linkNew(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void createFolder(const std::string& path) override;

    bool isPseudo(const std::string&) override { return false; }

    /// The system counts 255 units of UTF-16, which any name of 255 bytes keeps within.
    std::size_t nameLimit() const noexcept override;
    bool isNameTaken(const base::FileFailure& failure) const noexcept override;
    bool isOtherVolume(const base::FileFailure& failure) const noexcept override;

  private:
    OwnerOnly rights_;
};

}  // namespace corvalence::platform::windows_system
