#include "files/file_type_texts.h"

#include <algorithm>

#include "files/file_texts.h"

namespace corvalence::files {

const std::string& FileTypeTexts::of(std::string_view path) {
    const std::string_view name = paths_.fileName(path);
    const std::size_t stop = std::min(name.rfind('.'), name.size());
    const auto [entry, isNew] =
        texts_.try_emplace(std::string(stop == 0 ? std::string_view() : name.substr(stop)));
    if (isNew) entry->second = describeFileType(path, paths_, types_);
    return entry->second;
}

}  // namespace corvalence::files
