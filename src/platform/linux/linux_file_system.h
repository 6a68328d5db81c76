#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::platform::linux_system {

/// Files by the system's own calls. Holds no state: one object serves all threads.
class LinuxFileSystem : public FileSystem {
  public:
    std::unique_ptr<File> openShared(const std::string& path) override;
    std::unique_ptr<File> openExclusive(const std::string& path) override;
    std::unique_ptr<File> createNew(const std::string& path) override;

    std::optional<FileStatus> status(const std::string& path, Follow follow) override;
    using FileSystem::list;
    std::vector<FolderEntry> list(const std::string& folder, Detail detail) override;
    bool isPseudo(const std::string& folder) override;

    void rename(const std::string& from, const std::string& to) override;
    bool renameNew(const std::string& from, const std::string& to) override;
    bool linkNew(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void createFolder(const std::string& path) override;

    std::size_t nameLimit() const noexcept override;
    bool isNameTaken(const base::FileFailure& failure) const noexcept override;
    bool isOtherVolume(const base::FileFailure& failure) const noexcept override;
};

}  // namespace corvalence::platform::linux_system
