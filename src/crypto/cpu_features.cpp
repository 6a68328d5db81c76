#include "crypto/cpu_features.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace corvalence::crypto {
namespace {

#if defined(__x86_64__)
CpuFeatures detect() noexcept {
    CpuFeatures features;
    unsigned eax = 0;
    unsigned ebx = 0;
    unsigned ecx = 0;
    unsigned edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) == 0) return features;
    const bool shuffles = (ecx & bit_SSSE3) != 0 && (ecx & bit_SSE4_1) != 0;
    features.aes = (ecx & bit_AES) != 0;
    if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0) features.sha = shuffles && (ebx & bit_SHA) != 0;
    __builtin_cpu_init();
    features.avx = __builtin_cpu_supports("avx") && __builtin_cpu_supports("bmi2");
    return features;
}
#else
CpuFeatures detect() noexcept {
    return {};
}
#endif

}  // namespace

const CpuFeatures& cpuFeatures() noexcept {
    static const CpuFeatures features = detect();
    return features;
}

}  // namespace corvalence::crypto
