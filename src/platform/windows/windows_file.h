#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/windows/handle.h"

namespace corvalence::platform::windows_system {

class WindowsFile : public File {
  public:
    WindowsFile(Handle handle, std::string path) : handle_(std::move(handle)), path_(std::move(path)) {}

    std::size_t read(base::ByteSpan buffer) override;
    void write(base::ByteView bytes) override;
    void seek(std::uint64_t position) override;
    std::uint64_t size() override;
    void resize(std::uint64_t size) override;
    void flush() override;
    FileStatus status() override;
    const std::string& path() const noexcept override { return path_; }

    HANDLE handle() const noexcept { return handle_.get(); }

  private:
    Handle handle_;
    std::string path_;
};

}  // namespace corvalence::platform::windows_system
