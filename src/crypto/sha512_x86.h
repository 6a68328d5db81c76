#pragma once

#include "crypto/sha_code.h"

namespace corvalence::crypto {

/// SHA-512's Compress64 for processors with AVX and BMI2.
void compressSha512Avx(std::uint64_t* state, const std::uint8_t* blocks, std::size_t count) noexcept;

}  // namespace corvalence::crypto
