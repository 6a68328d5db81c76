#pragma once

#include <windows.h>

#include <utility>

namespace corvalence::platform::windows_system {

/// Owns a handle that CloseHandle() closes. Both values by which the system says "none" count as none.
class Handle {
  public:
    Handle() = default;
    explicit Handle(HANDLE value) noexcept : value_(value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, nullptr)) {}
    Handle& operator=(Handle&& other) noexcept {
        Handle old(std::exchange(value_, std::exchange(other.value_, nullptr)));
        return *this;
    }
    ~Handle() {
        if (isOpen()) ::CloseHandle(value_);
    }

    HANDLE get() const noexcept { return value_; }
    bool isOpen() const noexcept { return value_ != nullptr && value_ != INVALID_HANDLE_VALUE; }

  private:
    HANDLE value_ = nullptr;
};

/// Owns memory that the system hands out and LocalFree() takes back.
template <typename Type>
class LocalMemory {
  public:
    LocalMemory() = default;
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;
    ~LocalMemory() {
        if (value_ != nullptr) ::LocalFree(value_);
    }

    Type get() const noexcept { return value_; }
    /// Where a call of the system puts its result.
    Type* out() noexcept { return &value_; }

  private:
    Type value_ = nullptr;
};

}  // namespace corvalence::platform::windows_system
