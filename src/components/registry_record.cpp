#include "components/registry_record.h"

#include <algorithm>
#include <array>

#include "base/record_text.h"
#include "crypto/digester.h"

namespace corvalence::components {

namespace {

enum class Form { Bytes, Text, TextAsItStands, Number, LargeNumber };

struct TypeRow {
    std::string_view name;
    Form form;
};

/// By type number.
constexpr std::array<TypeRow, 12> kTypes = {{
    {"REG_NONE", Form::Bytes},
    {"REG_SZ", Form::Text},
    {"REG_EXPAND_SZ", Form::TextAsItStands},
    {"REG_BINARY", Form::Bytes},
    {"REG_DWORD", Form::Number},
    {"REG_DWORD_BIG_ENDIAN", Form::Number},  // as the machine would read it: no bytes are swapped
    {"REG_LINK", Form::TextAsItStands},
    {"REG_MULTI_SZ", Form::Bytes},
    {"REG_RESOURCE_LIST", Form::Bytes},
    {"REG_FULL_RESOURCE_DESCRIPTOR", Form::Bytes},
    {"REG_RESOURCE_REQUIREMENTS_LIST", Form::Bytes},
    {"REG_QWORD", Form::LargeNumber},
}};

constexpr std::size_t kMultiText = 7;
static_assert(kTypes[kMultiText].name == "REG_MULTI_SZ");
constexpr std::size_t kVeryLarge = 200'000;

constexpr std::string_view kUnknown = "Unrecognised Data";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kBytesWidth = 3;

std::string bytesText(const std::vector<std::uint8_t>& data) {
    std::string text(data.size() * kBytesWidth, ' ');
    for (std::size_t at = 0; at < data.size(); ++at) {
        text[at * kBytesWidth] = kDigits[data[at] >> 4];
        text[at * kBytesWidth + 1] = kDigits[data[at] & 0xF];
    }
    return text;
}

/// The low 32 bits, as the machine lays numbers out.
std::string numberText(const std::vector<std::uint8_t>& data) {
    std::uint32_t number = 0;
    for (std::size_t at = 0; at < std::min<std::size_t>(data.size(), sizeof(number)); ++at)
        number |= static_cast<std::uint32_t>(data[at]) << (8 * at);
    std::string text;
    for (int shift = 28; shift >= 0; shift -= 4)
        text += kDigits[number >> shift & 0xF];
    return text;
}

/// The same in 16 columns, without leading zeros.
std::string largeNumberText(const std::vector<std::uint8_t>& data) {
    constexpr std::size_t kWidth = 16;
    std::string text = numberText(data);
    text.erase(0, std::min(text.find_first_not_of('0'), text.size() - 1));
    return std::string(kWidth - text.size(), ' ') + text;
}

std::string withBlanksFor(std::string_view characters, std::string text) {
    std::replace_if(
        text.begin(), text.end(), [&](char c) { return characters.find(c) != std::string_view::npos; }, ' ');
    return text;
}

/// What is mailed in a log must not give a secret away.
std::string digestText(const platform::RegistryValue& value) {
    crypto::Digester digester(crypto::DigestCode::Sha256);
    digester.update(value.data);
    return "SHA-256 " + digester.finish();
}

std::string dataText(Form form, const platform::RegistryValue& value) {
    using namespace std::string_view_literals;
    switch (form) {
        case Form::Bytes:
            return bytesText(value.data);
        case Form::Text:
            return withBlanksFor("\r\n\f\v\x7F\0"sv, value.text);
        case Form::TextAsItStands: {
            std::string text;
            for (const char c : value.text) {
                if (c == '\n') text += '\r';
                text += c == '\0' ? ' ' : c;
            }
            return text;
        }
        case Form::Number:
            return value.data.empty() ? std::string() : numberText(value.data);
        case Form::LargeNumber:
            return value.data.empty() ? std::string() : largeNumberText(value.data);
    }
    return {};
}

}  // namespace

std::optional<std::string> renderRegistryValue(const platform::RegistryValue& value) {
    if (!value.isReadable) return "Error";
    if (value.type >= kTypes.size()) return std::string(kUnknown) + base::kSeparator + std::string(kUnknown);
    const TypeRow& type = kTypes[value.type];
    const std::size_t size = type.form == Form::Bytes ? value.data.size() * kBytesWidth : value.text.size();
    if (size > kRegistryLineLimit) return std::nullopt;
    const std::string text =
        value.isProtected && !value.data.empty() ? digestText(value) : dataText(type.form, value);
    if (text.empty()) return std::string(kEmptyKey);
    return std::string(type.name) + base::kSeparator + text;
}

bool isVeryLarge(const platform::RegistryValue& value) noexcept {
    return value.isReadable && value.type == kMultiText && value.data.size() > kVeryLarge;
}

bool beginsRegistryRecord(std::string_view line) noexcept {
    return line.find(base::kSeparator) != std::string_view::npos &&
           std::any_of(platform::kRegistryRoots.begin(), platform::kRegistryRoots.end(),
                       [&](const platform::RegistryRootName& root) {
                           return line.starts_with(root.name) && line.size() > root.name.size() &&
                                  line[root.name.size()] == '\\';
                       });
}

std::string_view firstLine(std::string_view text) noexcept {
    return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace corvalence::components
