#pragma once

#include <map>
#include <memory>
#include <string>

#include "memory_file.h"
#include "platform/file_system.h"

namespace corvalence::fuzz {

/// Files in memory, for targets that would otherwise wait for a disk. There are no folders and no links: a
/// path is a name. Every file is another one, by its number.
class MemoryFileSystem : public platform::FileSystem {
  public:
    struct Entry {
        std::shared_ptr<test::MemoryFile> file = std::make_shared<test::MemoryFile>();
        std::uint64_t number = 0;
    };
    std::map<std::string, Entry> entries;

    Entry& put(const std::string& path, base::ByteView bytes) {
        Entry entry;
        entry.file->bytes.assign(bytes.begin(), bytes.end());
        entry.number = ++last_;
        return entries[path] = entry;
    }

    std::unique_ptr<platform::File> openShared(const std::string& path) override {
        return std::make_unique<Handle>(find(path), path);
    }
    std::unique_ptr<platform::File> openExclusive(const std::string& path) override {
        return std::make_unique<Handle>(find(path), path);
    }
    std::unique_ptr<platform::File> createNew(const std::string& path) override {
        if (entries.contains(path)) throw base::FileFailure(base::Cause::AccessDenied, kTaken, path);
        return std::make_unique<Handle>(put(path, {}), path);
    }
    std::optional<platform::FileStatus> status(const std::string& path, platform::Follow) override {
        const auto found = entries.find(path);
        if (found == entries.end()) return std::nullopt;
        return statusOf(found->second);
    }
    using FileSystem::list;
    std::vector<platform::FolderEntry> list(const std::string&, platform::Detail) override { return {}; }
    void rename(const std::string& from, const std::string& to) override {
        const Entry entry = find(from);
        entries.erase(from);
        entries[to] = entry;
    }
    bool renameNew(const std::string& from, const std::string& to) override {
        if (entries.contains(to)) return false;
        rename(from, to);
        return true;
    }
    bool linkNew(const std::string& from, const std::string& to) override {
        return entries.emplace(to, find(from)).second;
    }
    bool isPseudo(const std::string&) override { return false; }
    void remove(const std::string& path) override {
        find(path);
        entries.erase(path);
    }
    void createFolder(const std::string&) override {}
    std::size_t nameLimit() const noexcept override { return 255; }
    bool isNameTaken(const base::FileFailure& failure) const noexcept override {
        return failure.systemError() == kTaken;
    }
    bool isOtherVolume(const base::FileFailure&) const noexcept override { return false; }

  private:
    static constexpr int kTaken = 17;

    static platform::FileStatus statusOf(const Entry& entry) {
        platform::FileStatus status;
        status.kind = platform::FileKind::Regular;
        status.size = entry.file->bytes.size();
        status.identity = {1, entry.number, 1};
        return status;
    }

    /// An opening of a file, with a position of its own.
    class Handle : public platform::File {
      public:
        Handle(const Entry& entry, std::string path) : entry_(entry), path_(std::move(path)) {}
        std::size_t read(base::ByteSpan buffer) override {
            entry_.file->seek(position_);
            const std::size_t count = entry_.file->read(buffer);
            position_ += count;
            return count;
        }
        void write(base::ByteView bytes) override {
            entry_.file->seek(position_);
            entry_.file->write(bytes);
            position_ += bytes.size();
        }
        void seek(std::uint64_t position) override { position_ = position; }
        std::uint64_t size() override { return entry_.file->size(); }
        void resize(std::uint64_t size) override { entry_.file->resize(size); }
        void flush() override {}
        platform::FileStatus status() override { return statusOf(entry_); }
        const std::string& path() const noexcept override { return path_; }

      private:
        Entry entry_;
        std::string path_;
        std::uint64_t position_ = 0;
    };

    Entry& find(const std::string& path) {
        const auto found = entries.find(path);
        if (found == entries.end()) throw base::FileFailure(base::Cause::FileNotFound, 2, path);
        return found->second;
    }

    std::uint64_t last_ = 0;
};

}  // namespace corvalence::fuzz
