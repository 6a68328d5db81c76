#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/key_tree.h"
#include "platform/system_registry.h"

namespace corvalence::platform::linux_system {

/// Where the system keeps what the registry shows, without closing separators.
struct RegistryPlaces {
    std::string configuration = "/etc";
    std::string userConfiguration;  // of the user who runs the program; empty for none
    std::string proc = "/proc";
    std::string sys = "/sys";
    std::string mime = "/usr/share/mime";
    std::vector<std::string> applicationLists;  // mimeapps.list and mimeinfo.cache files

    /// The places of this system and this user, by the XDG base directories.
    static RegistryPlaces ofSystem();
};

/// What an intruder or a careless update would change, and no file's digest makes readable, as the five
/// roots: kinds of files and their programs; the user's and the machine's settings files and the kernel's
/// parameters; accounts and groups; what the machine was started with and is made of.
class LinuxRegistry : public SystemRegistry {
  public:
    explicit LinuxRegistry(FileSystem& files, RegistryPlaces places = RegistryPlaces::ofSystem());

    std::unique_ptr<RegistryKeyReader> open(RegistryRoot root, const std::string& keyPath) override;

  private:
    struct Branch {
        std::string name;  // of its key below the root
        std::unique_ptr<KeyTree> tree;
    };

    std::vector<Branch>& branchesOf(RegistryRoot root) {
        return branches_.at(static_cast<std::size_t>(root));
    }
    void addBranch(RegistryRoot root, std::string name, std::unique_ptr<KeyTree> tree);

    std::array<std::vector<Branch>, kRegistryRoots.size()> branches_;
};

}  // namespace corvalence::platform::linux_system
