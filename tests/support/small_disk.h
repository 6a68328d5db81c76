#pragma once

#include "platform/system_status.h"
#include "platform/volumes.h"

namespace corvalence::test {

/// The machine's status, with as much room on every disk as a test wants.
class SmallDisk : public platform::SystemStatus {
  public:
    explicit SmallDisk(platform::SystemStatus& inner) : inner_(inner) {}

    std::optional<std::uint64_t> room;  // in bytes; the real room where there is none

    std::optional<platform::Capacity> memory() override { return inner_.memory(); }
    std::optional<platform::Capacity> disk(const std::string& path) override {
        auto capacity = inner_.disk(path);
        if (capacity && room) capacity->available = *room;
        return capacity;
    }

  private:
    platform::SystemStatus& inner_;
};

/// The machine's volumes, with all of them as one that not every machine has.
class SmallVolumes : public platform::Volumes {
  public:
    explicit SmallVolumes(platform::Volumes& inner) : inner_(inner) {}

    bool fat = false;
    bool withLists = true;
    std::optional<platform::DriveType> type;
    std::optional<std::string> everywhere;  // the root of every path

    std::string rootOf(const std::string& path) override {
        return everywhere ? *everywhere : inner_.rootOf(path);
    }
    platform::DriveType driveType(const std::string& root) override {
        return type ? *type : inner_.driveType(root);
    }
    bool keepsAccessLists(const std::string& root) override {
        return withLists && inner_.keepsAccessLists(root);
    }
    bool isFat(const std::string& root) override { return fat || inner_.isFat(root); }
    platform::WalkRoots walkRoots() override { return inner_.walkRoots(); }

  private:
    platform::Volumes& inner_;
};

}  // namespace corvalence::test
