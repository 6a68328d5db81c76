#include "settings/configuration.h"

#include <cassert>

#include "base/file_failure.h"
#include "base/number_text.h"

namespace corvalence::settings {

namespace {

std::string keyPath(std::string_view name) {
    return std::string(kKeyRoot).append(name);
}

bool isPrintable(char c) noexcept {
    return c >= 32 && c <= 126;
}

}  // namespace

std::string acceptedText(const ConfigurationKey& key, const std::string& text) {
    switch (key.form) {
        case Form::Number: {
            const auto value = base::scanInteger(text);
            const bool accepted = value && *value >= key.lowest && *value <= key.highest;
            return accepted ? std::to_string(*value) : std::string(key.fallback);
        }
        case Form::Character:
            return !text.empty() && isPrintable(text.front()) ? text.substr(0, 1) : std::string(key.fallback);
        case Form::Letter:
        case Form::Text:
        case Form::Path:
        case Form::Paths:
            return text;
    }
    return text;
}

std::string Configuration::text(std::string_view name) const {
    const ConfigurationKey* row = findConfigurationKey(name);
    assert(row != nullptr);
    const auto text = store_.read(keyPath(row->name));
    if (!text) {
        ui_.message(platform::Icon::Stop, "Registry error.");
        return std::string(row->fallback);
    }
    return acceptedText(*row, *text);
}

std::string Configuration::folder(std::string_view name) const {
    std::string path = text(name);
    if (path.empty()) throw base::FileFailure(base::Cause::BadPath, 0, std::string(name));
    if (path.back() != '/' && path.back() != '\\') path.push_back('/');
    return path;
}

int Configuration::number(std::string_view name) const {
    return static_cast<int>(base::scanInteger(text(name)).value_or(0));
}

std::optional<std::string> Configuration::stored(std::string_view name) const {
    return store_.read(keyPath(name));
}

bool Configuration::write(std::string_view name, const std::string& text) {
    if (writeQuietly(name, text)) return true;
    ui_.message(platform::Icon::Stop, "Registry error.");
    return false;
}

bool Configuration::writeQuietly(std::string_view name, const std::string& text) {
    return store_.write(keyPath(name), text);
}

}  // namespace corvalence::settings
