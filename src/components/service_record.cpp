#include "components/service_record.h"

#include <algorithm>

#include "base/record_text.h"

namespace corvalence::components {

namespace {

struct BitRow {
    std::uint32_t bit;
    std::string_view text;
};

constexpr std::array<BitRow, 7> kTypes = {{{0x01, "KERNEL DRIVER  "},
                                           {0x02, "FILE SYSTEM DRIVER  "},
                                           {0x04, "ADAPTER"},
                                           {0x08, "RECOGNIZER DRIVER  "},
                                           {0x10, "OWN PROCESS  "},
                                           {0x20, "SHARE PROCESS  "},
                                           {0x100, "INTERACTIVE PROCESS  "}}};
constexpr std::array<BitRow, 5> kControls = {{{0x01, "ACCEPT STOP  "},
                                              {0x02, "ACCEPT PAUSE CONTINUE  "},
                                              {0x04, "ACCEPT SHUTDOWN  "},
                                              {0x08, "ACCEPT PARAMCHANGE  "},
                                              {0x10, "ACCEPT NETBINDCHANGE  "}}};
/// By number; no service is in state 0.
constexpr std::array<std::string_view, 8> kStates = {
    "", "STOPPED", "START PENDING", "STOP PENDING", "RUNNING", "CONTINUE PENDING", "PAUSE PENDING", "PAUSED"};
constexpr std::array<std::string_view, 5> kStartTypes = {"BOOT START", "SYSTEM START", "AUTO START",
                                                         "DEMAND START", "DISABLED"};
constexpr std::array<std::string_view, 4> kErrorControls = {"ERROR IGNORE", "ERROR NORMAL", "ERROR SEVERE",
                                                            "ERROR CRITICAL"};

template <std::size_t N>
std::string bitTexts(const std::array<BitRow, N>& rows, std::uint32_t bits) {
    std::string text;
    for (const BitRow& row : rows)
        if ((bits & row.bit) != 0) text += row.text;
    return text;
}

template <std::size_t N>
std::string_view numberText(const std::array<std::string_view, N>& texts, std::uint32_t number) {
    return number < N ? texts[number] : std::string_view();
}

std::string onOneLine(std::string text) {
    constexpr std::string_view kBreaks = "\r\n\f\v\x7F";
    std::replace_if(
        text.begin(), text.end(), [&](char c) { return kBreaks.find(c) != std::string_view::npos; }, ' ');
    return text;
}

}  // namespace

std::string renderService(const platform::Service& service) {
    std::string line;
    base::appendField(line, onOneLine(service.name));
    base::appendField(line, onOneLine(service.displayName));
    base::appendField(line, bitTexts(kTypes, service.type));
    base::appendField(line, numberText(kStates, service.state));
    base::appendField(line, bitTexts(kControls, service.controls));
    if (!service.configuration) return line;
    const platform::ServiceConfiguration& configuration = *service.configuration;
    base::appendField(line, onOneLine(configuration.binaryPath));
    base::appendField(line, numberText(kStartTypes, configuration.startType));
    base::appendField(line, numberText(kErrorControls, configuration.errorControl));
    base::appendField(line, onOneLine(configuration.account));
    base::appendField(line, onOneLine(service.description));
    return line;
}

bool isServiceRecord(std::string_view line) noexcept {
    const auto fields = std::count(line.begin(), line.end(), base::kSeparator);
    return line.ends_with(base::kSeparator) && (fields == 5 || fields == 10) &&
           !line.starts_with(base::kSeparator);
}

std::string_view serviceName(std::string_view line) noexcept {
    return line.substr(0, line.find(base::kSeparator));
}

}  // namespace corvalence::components
