#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/access_control.h"
#include "platform/file_system.h"

namespace corvalence::test {

/// Counts what changes files (createNew, write, flush, resize, rename, renameNew, remove, createFolder,
/// copyProtection, setAttributes) and brings one planned mishap about. Operations count from 1.
class FaultPlan {
  public:
    /// How a process ends that the plan ends.
    static constexpr int kEndedExitCode = 87;

    enum class Lasts {
        Once,      // the planned operation alone fails
        FromThere  // so does, from then on, whatever needs room: createNew, write, resize, createFolder
    };

    /// From now on counts anew and lets operation `number` fail with this cause. A failing write leaves half
    /// of its bytes.
    void failAt(std::uint64_t number, base::Cause cause = base::Cause::DiskFull, Lasts lasts = Lasts::Once);
    /// From now on counts anew and ends the process at operation `number`: a write is half done then,
    /// anything else not at all. Nothing is cleaned up, as by a kill.
    void endProcessAt(std::uint64_t number);
    /// Reads of files whose path ends in `ending` fail (Generic) once `offset` bytes of the file were read.
    void failReads(std::string ending, std::uint64_t offset = 0);
    /// No mishap from now on; counts anew.
    void clear();

    /// Operations since the last plan; after a run without a mishap, how many places there are to put one.
    std::uint64_t operations() const noexcept { return operations_; }
    bool hasStruck() const noexcept { return hasStruck_; }

  private:
    friend class FaultyFile;
    friend class FaultyFileSystem;
    friend class FaultyAccessControl;

    enum class Needs { Room, Nothing };
    enum class Mishap { None, Failure, End };

    void reset(Mishap mishap, std::uint64_t number);
    /// Counts one operation and tells what happens to it.
    Mishap next(Needs needs);
    /// The same for operations that are done as a whole or not at all.
    void pass(Needs needs, const std::string& path);
    [[noreturn]] void fail(const std::string& path) const;
    [[noreturn]] static void endProcess();
    void read(const std::string& path, std::uint64_t position) const;

    Mishap mishap_ = Mishap::None;
    std::uint64_t number_ = 0;
    std::uint64_t operations_ = 0;
    base::Cause cause_ = base::Cause::DiskFull;
    Lasts lasts_ = Lasts::Once;
    bool hasStruck_ = false;
    std::optional<std::string> badEnding_;
    std::uint64_t badOffset_ = 0;
};

/// A file system that is the given one but for what a plan does to it.
class FaultyFileSystem : public platform::FileSystem {
  public:
    FaultyFileSystem(platform::FileSystem& inner, FaultPlan& plan) : inner_(inner), plan_(plan) {}

    std::unique_ptr<platform::File> openShared(const std::string& path) override;
    std::unique_ptr<platform::File> openExclusive(const std::string& path) override;
    std::unique_ptr<platform::File> createNew(const std::string& path) override;
    std::optional<platform::FileStatus> status(const std::string& path, platform::Follow follow) override;
    using FileSystem::list;
    std::vector<platform::FolderEntry> list(const std::string& folder, platform::Detail detail) override;
    bool isPseudo(const std::string& folder) override { return inner_.isPseudo(folder); }
    void rename(const std::string& from, const std::string& to) override;
    bool renameNew(const std::string& from, const std::string& to) override;
    bool linkNew(const std::string& from, const std::string& to) override;
    void remove(const std::string& path) override;
    void createFolder(const std::string& path) override;
    std::size_t nameLimit() const noexcept override;
    bool isNameTaken(const base::FileFailure& failure) const noexcept override;
    bool isOtherVolume(const base::FileFailure& failure) const noexcept override;

  private:
    platform::FileSystem& inner_;
    FaultPlan& plan_;
};

/// The access control that goes with it: takes the files that a FaultyFileSystem opened, and others.
class FaultyAccessControl : public platform::AccessControl {
  public:
    FaultyAccessControl(platform::AccessControl& inner, FaultPlan& plan) : inner_(inner), plan_(plan) {}

    void copyProtection(const std::string& from, platform::File& to) override;
    void setAttributes(platform::File& file, std::uint32_t attributes) override;
    std::unique_ptr<platform::PinnedFolder> pinFolderOf(const std::string& file, std::string& name) override;

  private:
    platform::AccessControl& inner_;
    FaultPlan& plan_;
};

}  // namespace corvalence::test
