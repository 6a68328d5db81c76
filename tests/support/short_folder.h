#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace corvalence::test {

/// A folder whose path is so short that a record's 260 bytes have room for the longest names. Gone at the
/// end.
class ShortFolder {
  public:
    ShortFolder() {
        std::string name = "/tmp/cXXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("mkdtemp");
        path_ = name + "/";
    }
    ~ShortFolder() { std::filesystem::remove_all(path_); }
    ShortFolder(const ShortFolder&) = delete;
    ShortFolder& operator=(const ShortFolder&) = delete;

    std::string operator/(std::string_view name) const { return path_ + std::string(name); }

  private:
    std::string path_;
};

}  // namespace corvalence::test
