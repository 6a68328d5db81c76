#pragma once

#include <unistd.h>

#include <string>
#include <utility>

namespace corvalence::platform::linux_system {

/// Owns an open file descriptor; -1 stands for none.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }

    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return number_ >= 0; }
    /// A path that leads to what is open, whatever happens to its names.
    std::string pinnedPath() const { return "/proc/self/fd/" + std::to_string(number_); }

  private:
    int number_ = -1;
};

}  // namespace corvalence::platform::linux_system
