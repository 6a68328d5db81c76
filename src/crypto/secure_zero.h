#pragma once

#include <cstddef>

namespace corvalence::crypto {

/// Overwrites `size` bytes with zeros. The store is kept by the optimiser even where nothing reads the bytes
/// again.
void secureZero(void* data, std::size_t size) noexcept;

}  // namespace corvalence::crypto
