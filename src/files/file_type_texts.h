#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "base/path_rules.h"
#include "platform/file_types.h"

namespace corvalence::files {

/// The types of many files: a type goes by the extension alone, and asking the system takes long.
class FileTypeTexts {
  public:
    FileTypeTexts(const base::PathRules& paths, platform::FileTypes& types) : paths_(paths), types_(types) {}

    /// As describeFileType() has it.
    const std::string& of(std::string_view path);

  private:
    const base::PathRules& paths_;
    platform::FileTypes& types_;
    std::unordered_map<std::string, std::string> texts_;  // by what the name ends in
};

}  // namespace corvalence::files
