#pragma once

namespace corvalence::crypto {

/// What the accelerated code may ask of the processor and of the system that runs on it.
struct CpuFeatures {
    bool sha = false;  // SHA instructions, with SSSE3 and SSE4.1
    bool aes = false;  // AES instructions
    bool avx = false;  // AVX and BMI2, the registers kept by the system
};

/// Asked of the processor once; all false on other architectures than x86-64.
const CpuFeatures& cpuFeatures() noexcept;

}  // namespace corvalence::crypto
