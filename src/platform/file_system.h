#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"
#include "base/file_failure.h"
#include "base/file_time.h"

namespace corvalence::platform {

// Every call of this header throws base::FileFailure where it says nothing else. Paths are absolute and
// byte-exact (UTF-8 on Windows). No call changes the working directory. Objects serve one thread at a time; a
// FileSystem may be used by several.

/// Bits of an attribute word.
namespace attribute {
inline constexpr std::uint32_t kReadOnly = 0x01;
inline constexpr std::uint32_t kHidden = 0x02;
inline constexpr std::uint32_t kSystem = 0x04;
inline constexpr std::uint32_t kFolder = 0x10;
inline constexpr std::uint32_t kArchive = 0x20;
inline constexpr std::uint32_t kCompressed = 0x800;
inline constexpr std::uint32_t kEncrypted = 0x4000;
}  // namespace attribute

enum class FileKind { Regular, Folder, Link, Other };

/// What tells one file from another, even where a name or a number is used again.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t number = 0;
    std::uint64_t birth = 0;  // ticks of the creation time, 0 where the file system keeps none

    auto operator<=>(const FileIdentity&) const = default;
};

struct FileStatus {
    FileKind kind = FileKind::Other;
    /// The Windows attribute word. On Linux made from type (0x20 regular, 0x10 folder), mode (0x01 where the
    /// owner may not write), name (0x02 for a leading full stop) and the file system's compressed and
    /// encrypted flags.
    std::uint32_t attributes = 0;
    std::uint64_t size = 0;
    base::FileTime written;
    /// Creation; where the file system keeps none, the last change of status.
    base::FileTime created;
    FileIdentity identity;
};

struct FolderEntry {
    std::string name;
    FileStatus status;
    /// Why nothing but the name is known; the kind is Other then.
    std::optional<base::Cause> fault = std::nullopt;
};

/// An open file. Closing (the destructor) never throws: whoever needs to know that data arrived calls
/// flush().
class File {
  public:
    virtual ~File() = default;

    /// Reads up to buffer.size() bytes at the position and moves it; 0 at the end of the file. Short reads
    /// happen only at the end.
    virtual std::size_t read(base::ByteSpan buffer) = 0;
    /// Writes all bytes at the position and moves it.
    virtual void write(base::ByteView bytes) = 0;
    /// Sets the position, from the start.
    virtual void seek(std::uint64_t position) = 0;
    /// Size in bytes by the directory entry, not by reading.
    virtual std::uint64_t size() = 0;
    /// Cuts the file, or extends it with zeros. The position stays.
    virtual void resize(std::uint64_t size) = 0;
    /// Brings all written bytes to the device.
    virtual void flush() = 0;
    virtual FileStatus status() = 0;
    virtual const std::string& path() const noexcept = 0;
};

enum class Follow { Yes, No };

/// Which entries of a listing have their status: all, or folders alone, and no more than the kind may be
/// known of the others. Names alone take half the time.
enum class Detail { All, Folders };

class FileSystem {
  public:
    virtual ~FileSystem() = default;

    /// Opens a regular file for reading and lets others go on using it. Links are followed. Anything but a
    /// regular file is refused with cause InvalidFile, without reading it and without waiting (a FIFO, a
    /// device).
    virtual std::unique_ptr<File> openShared(const std::string& path) = 0;
    /// Opens an existing regular file for reading and writing and keeps every other opener of this kind out
    /// as long as it is open: SharingViolation where somebody else holds it.
    virtual std::unique_ptr<File> openExclusive(const std::string& path) = 0;
    /// Creates a file that must not exist, for reading and writing, held as by openExclusive. Links are not
    /// followed; readable and writable by the owner alone, whatever the process's mask. rename() and
    /// renameNew() work on it while it is open. A taken name is
    /// refused with cause AccessDenied and the system's error for it; isNameTaken() tells this case.
    virtual std::unique_ptr<File> createNew(const std::string& path) = 0;

    /// Empty where nothing stands at the path (a missing folder on the way included). The link itself with
    /// Follow::No.
    virtual std::optional<FileStatus> status(const std::string& path, Follow follow) = 0;
    /// All entries but "." and "..", links not followed, ordered by the bytes of their names. An entry that
    /// vanishes meanwhile is left out, one whose status cannot be had is listed with its fault.
    virtual std::vector<FolderEntry> list(const std::string& folder, Detail detail) = 0;
    std::vector<FolderEntry> list(const std::string& folder) { return list(folder, Detail::All); }
    /// Whether the folder lies on a file system that the kernel makes up while it is read (processes,
    /// devices, its own settings) and that stores nothing. False where there is no telling, and on Windows.
    virtual bool isPseudo(const std::string& folder) = 0;

    // A failure of the next three means that nothing was done. They bring the change to the device as far as
    // it takes it.

    /// Renames, replacing a file at `to`.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Renames unless something stands at `to`: false then. Cause Generic across file systems;
    /// isOtherVolume() tells.
    virtual bool renameNew(const std::string& from, const std::string& to) = 0;
    /// Gives the file at `from` a second name, unless something stands at `to`: false then. A failure where
    /// the file system keeps one name a file; isOtherVolume() tells of two file systems.
    virtual bool linkNew(const std::string& from, const std::string& to) = 0;
    /// Removes a file or a link (not what it leads to). A missing one is a failure (FileNotFound).
    virtual void remove(const std::string& path) = 0;
    /// Makes a folder, and those above it that are missing, open to the owner alone. One that is there stays
    /// as it is.
    virtual void createFolder(const std::string& path) = 0;

    /// Longest name of a single file, in bytes.
    virtual std::size_t nameLimit() const noexcept = 0;
    virtual bool isNameTaken(const base::FileFailure& failure) const noexcept = 0;
    virtual bool isOtherVolume(const base::FileFailure& failure) const noexcept = 0;
};

}  // namespace corvalence::platform
