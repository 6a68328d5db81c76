#include "base/record_text.h"

#include "base/number_text.h"

namespace corvalence::base {

std::vector<std::string_view> splitFields(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const std::size_t end = line.find(kSeparator);
        fields.push_back(line.substr(0, end));
        if (end == std::string_view::npos) break;
        line.remove_prefix(end + 1);
    }
    return fields;
}

bool isRecordPath(std::string_view path) noexcept {
    constexpr std::string_view kForbidden("\x7F\n\r\0", 4);
    return !path.empty() && path.size() <= kPathLimit &&
           path.find_first_of(kForbidden) == std::string_view::npos;
}

std::string_view withoutLineEnd(std::string_view line) noexcept {
    if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return line;
}

void appendField(std::string& line, std::string_view field) {
    line.append(field);
    line.push_back(kSeparator);
}

void appendTime(std::string& line, FileTime time) {
    appendField(line, std::to_string(time.high()));
    appendField(line, std::to_string(time.low()));
}

std::optional<FileTime> scanTime(std::string_view high, std::string_view low) {
    const auto highHalf = scanInteger(high);
    const auto lowHalf = scanInteger(low);
    if (!highHalf || !lowHalf) return std::nullopt;
    return FileTime::fromHalves(static_cast<std::int32_t>(*highHalf), static_cast<std::int32_t>(*lowHalf));
}

}  // namespace corvalence::base
