#include "platform/json_settings_store.h"

#include <nlohmann/json.hpp>

#include "platform/file_copy.h"

namespace corvalence::platform {

namespace {

using Json = nlohmann::json;

constexpr std::uint64_t kSizeLimit = std::uint64_t{16} << 20;

/// The object in the file. Empty where the file holds none; FileFailure where it cannot be read.
std::optional<Json> parseFile(FileSystem& files, const std::string& path) {
    const auto file = files.openShared(path);
    const std::uint64_t size = file->size();
    if (size > kSizeLimit) return std::nullopt;
    std::string text(static_cast<std::size_t>(size), '\0');
    text.resize(file->read({reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
    Json object = Json::parse(text, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    return object;
}

}  // namespace

std::optional<std::string> JsonSettingsStore::read(const std::string& keyPath) {
    try {
        const std::optional<Json> object = parseFile(files_, path_);
        if (!object) return std::nullopt;
        const auto member = object->find(keyPath);
        if (member == object->end() || !member->is_string()) return std::nullopt;
        return member->get<std::string>();
    } catch (const base::FileFailure&) {
        return std::nullopt;  // by contract a store that cannot be read is one without the key
    }
}

bool JsonSettingsStore::write(const std::string& keyPath, const std::string& text) {
    try {
        std::optional<Json> object = exists() ? parseFile(files_, path_) : Json::object();
        if (!object) return false;
        (*object)[keyPath] = text;
        replace(object->dump(4) + "\n");
        return true;
    } catch (const base::FileFailure&) {
        return false;
    } catch (const Json::exception&) {
        return false;  // JSON holds no text that is not UTF-8
    }
}

bool JsonSettingsStore::exists() {
    return files_.status(path_, Follow::Yes).has_value();
}

void JsonSettingsStore::replace(const std::string& text) {
    if (const auto folder = paths_.folder(path_); !folder.empty()) files_.createFolder(std::string(folder));
    const std::string beside = path_ + ".new";
    if (files_.status(beside, Follow::No)) {
        // Left by a program that was ended while writing: one that still writes holds it, and this open
        // fails.
        files_.openExclusive(beside);
        files_.remove(beside);
    }
    auto file = files_.createNew(beside);
    try {
        file->write(base::bytesOf(text));
        file->flush();
        file.reset();
        files_.rename(beside, path_);
    } catch (const base::FileFailure&) {
        file.reset();
        removeQuietly(files_, beside);
        throw;
    }
}

}  // namespace corvalence::platform
