#include "shell/info_bars.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace corvalence::shell {

namespace {

constexpr double kKilo = 1024.0;

std::string sizeText(std::uint64_t bytes) {
    constexpr std::array<const char*, 4> kUnits = {"", " KB", " MB", " GB"};
    double value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= kKilo && unit + 1 < kUnits.size()) {
        value /= kKilo;
        ++unit;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2lf", value);
    return std::string(text.data()) + kUnits[unit];
}

}  // namespace

InfoBarContent memoryBar(const std::optional<platform::Capacity>& memory) {
    const std::string prefix = "Memory available: ";
    if (!memory || memory->total < 100) return {prefix, std::nullopt};
    const auto percent = static_cast<unsigned>(memory->available / (memory->total / 100));
    return {prefix + std::to_string(percent) + "%", std::min(percent, 100U)};
}

InfoBarContent diskSpaceBar(const std::optional<platform::Capacity>& disk) {
    const std::string prefix = "Disk space available: ";
    if (!disk) return {prefix, std::nullopt};
    // The bar moves in the steps that whole ratios of total to free space give.
    const std::uint64_t ratio = disk->available == 0 ? 0 : disk->total / disk->available;
    const auto percent = ratio == 0 ? 0U : static_cast<unsigned>(100 / ratio);
    return {prefix + sizeText(disk->available), disk->available == 0 ? 0U : percent};
}

InfoBarContent countdownBar(const std::string& countdown) {
    return {"Next check: " + countdown, std::nullopt};
}

}  // namespace corvalence::shell
