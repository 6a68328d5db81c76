#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/recycle_bin.h"
#include "platform/volumes.h"

namespace corvalence::platform::linux_system {

/// Where desktops keep what was thrown away, by the trash convention of freedesktop.org (1.0).
struct TrashPlaces {
    /// Trash folders of users' homes, without closing separators.
    std::vector<std::string> homes;
    /// Roots of volumes, in which ".Trash/<user>" and ".Trash-<user>" are looked for.
    std::vector<std::string> volumes;
};

/// The trash folders of all users of this machine, and the roots of its volumes.
TrashPlaces trashPlaces(Volumes& volumes);

/// The trash folders of desktops, one user's or all users', as far as the caller may read them. What lies
/// there without a record of its original path is no item.
class TrashFolders : public RecycleBin {
  public:
    /// `places` is asked at every listing.
    TrashFolders(FileSystem& files, std::function<TrashPlaces()> places)
        : files_(files), places_(std::move(places)) {}

    std::vector<RecycledItem> items() override;

  private:
    /// The entries of a folder; none where it is missing or closed to the caller.
    std::vector<FolderEntry> entriesOf(const std::string& folder);
    /// Adds the items of one trash folder, whose relative paths begin in `base`.
    void addItems(const std::string& trash, const std::string& base, std::vector<RecycledItem>& items);
    std::vector<std::string> trashesOf(const std::string& volume);

    FileSystem& files_;
    std::function<TrashPlaces()> places_;
};

}  // namespace corvalence::platform::linux_system
