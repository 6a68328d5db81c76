#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/linux/descriptor.h"

namespace corvalence::platform::linux_system {

class LinuxFile : public File {
  public:
    /// `sizeHint`: the size found when the file was opened for reading, 0 where it is not known. A read that
    /// falls short at or behind it is taken for the end without asking once more.
    LinuxFile(Descriptor descriptor, std::string path, std::uint64_t sizeHint = 0)
        : descriptor_(std::move(descriptor)), path_(std::move(path)), sizeHint_(sizeHint) {}

    std::size_t read(base::ByteSpan buffer) override;
    void write(base::ByteView bytes) override;
    void seek(std::uint64_t position) override;
    std::uint64_t size() override;
    void resize(std::uint64_t size) override;
    void flush() override;
    FileStatus status() override;
    const std::string& path() const noexcept override { return path_; }

    int descriptor() const noexcept { return descriptor_.number(); }

  private:
    Descriptor descriptor_;
    std::string path_;
    std::uint64_t sizeHint_;
    std::uint64_t position_ = 0;
};

}  // namespace corvalence::platform::linux_system
