#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/linux/descriptor.h"

namespace corvalence::platform::linux_system {

class LinuxFile : public File {
  public:
    LinuxFile(Descriptor descriptor, std::string path)
        : descriptor_(std::move(descriptor)), path_(std::move(path)) {}

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
};

}  // namespace corvalence::platform::linux_system
