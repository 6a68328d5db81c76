#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include "machine.h"
#include "temp_folder.h"

namespace corvalence::test {

/// A folder whose path is so short that a record's 260 bytes have room for the longest names. Gone at the
/// end.
class ShortFolder {
  public:
    ShortFolder() {
        std::random_device numbers;
        do {
            path_ = native(shortFolder() + "c" + std::to_string(numbers() % 1'000'000) + "/");
        } while (!std::filesystem::create_directory(fsPath(path_)));
    }
    ~ShortFolder() { std::filesystem::remove_all(fsPath(path_)); }
    ShortFolder(const ShortFolder&) = delete;
    ShortFolder& operator=(const ShortFolder&) = delete;

    std::string operator/(std::string_view name) const { return path_ + native(name); }

  private:
    std::string path_;
};

}  // namespace corvalence::test
