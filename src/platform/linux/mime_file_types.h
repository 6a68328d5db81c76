#pragma once

#include <map>
#include <string>

#include "platform/file_types.h"

namespace corvalence::platform::linux_system {

/// File types from a folder of the shared MIME database (freedesktop.org Shared MIME-info Database 0.21): the
/// file "globs2" and one file for each type. Extensions match whatever their case, unless the database says
/// otherwise.
class MimeFileTypes : public FileTypes {
  public:
    explicit MimeFileTypes(std::string folder = "/usr/share/mime") : folder_(std::move(folder)) {}

    std::optional<std::string> typeText(std::string_view extension) override;

  private:
    struct Rule {
        int weight = 0;
        std::string type;
    };

    void load();
    void addLine(std::string_view line);

    std::string folder_;
    bool isLoaded_ = false;
    std::map<std::string, Rule, std::less<>> folded_;  // by extension in lower case
    std::map<std::string, Rule, std::less<>> exact_;   // extensions whose case matters
};

}  // namespace corvalence::platform::linux_system
