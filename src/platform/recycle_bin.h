#pragma once

#include <string>
#include <vector>

namespace corvalence::platform {

struct RecycledItem {
    /// Full path that the item had before it was thrown away, without a closing separator.
    std::string originalPath;
    bool isFolder = false;

    bool operator==(const RecycledItem&) const = default;
};

/// What users threw away and can still take back.
class RecycleBin {
  public:
    virtual ~RecycleBin() = default;

    /// All items that the caller may see, ordered by the bytes of their original paths; the same path stands
    /// there as often as it was thrown away. What lies inside a folder that was thrown away is no item. Empty
    /// for an empty bin. Throws base::FileFailure (the bin's name for a path) where the bin cannot be listed.
    virtual std::vector<RecycledItem> items() = 0;
};

}  // namespace corvalence::platform
