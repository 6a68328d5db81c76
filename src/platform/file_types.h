#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvalence::platform {

/// What the system knows of files by the ending of their names.
class FileTypes {
  public:
    virtual ~FileTypes() = default;

    /// The registered type text of an extension without its full stop ("pdf"): the classes root on Windows,
    /// the shared MIME database on Linux. Empty where nothing is registered.
    virtual std::optional<std::string> typeText(std::string_view extension) = 0;
};

}  // namespace corvalence::platform
