#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace corvalence::test {

/// An open file that lies in memory.
class MemoryFile : public platform::File {
  public:
    std::vector<std::uint8_t> bytes;

    std::size_t read(base::ByteSpan buffer) override {
        if (position_ >= bytes.size()) return 0;
        const std::size_t count = std::min(buffer.size(), bytes.size() - position_);
        std::memcpy(buffer.data(), bytes.data() + position_, count);
        position_ += count;
        return count;
    }
    void write(base::ByteView data) override {
        if (data.empty()) return;
        bytes.resize(std::max(bytes.size(), position_ + data.size()));
        std::memcpy(bytes.data() + position_, data.data(), data.size());
        position_ += data.size();
    }
    void seek(std::uint64_t position) override { position_ = static_cast<std::size_t>(position); }
    std::uint64_t size() override { return bytes.size(); }
    void resize(std::uint64_t size) override { bytes.resize(static_cast<std::size_t>(size)); }
    void flush() override {}
    platform::FileStatus status() override { return {}; }
    const std::string& path() const noexcept override { return path_; }

  private:
    std::string path_ = "memory";
    std::size_t position_ = 0;
};

}  // namespace corvalence::test
