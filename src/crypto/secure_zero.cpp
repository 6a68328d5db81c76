#include "crypto/secure_zero.h"

#include <cstring>

namespace corvalence::crypto {

void secureZero(void* data, std::size_t size) noexcept {
    if (size == 0) return;
    std::memset(data, 0, size);
    // The empty instruction counts as a reader of the memory, so the stores above cannot be dropped.
    __asm__ __volatile__("" : : "r"(data) : "memory");
}

}  // namespace corvalence::crypto
