#pragma once

#include <string>
#include <string_view>

namespace corvalence::base {

/// How this system writes and compares paths. One value of it stands for the running system; tests may make
/// the other. Paths are bytes: UTF-8 on Windows, whatever the file system holds on Linux.
struct PathRules {
    char separator = '/';
    /// Letters A to Z and a to z compare equal (Windows); other bytes never fold.
    bool ignoresCase = false;

    bool isSeparator(char c) const noexcept { return c == separator || (separator == '\\' && c == '/'); }

    /// The one comparison of paths.
    bool equal(std::string_view a, std::string_view b) const noexcept;
    /// Whether `text` begins with `prefix` by the same comparison.
    bool beginsWith(std::string_view text, std::string_view prefix) const noexcept;
    /// A text that is byte for byte the same for paths that compare equal; for indexes by path.
    std::string comparisonKey(std::string_view path) const;

    /// What stands behind the last separator; the whole text where there is none.
    std::string_view fileName(std::string_view path) const noexcept;
    /// Everything up to and with the last separator; empty where there is none.
    std::string_view folder(std::string_view path) const noexcept;
    /// `folder` with a closing separator, added where it lacks one.
    std::string withSeparator(std::string_view folder) const;
    /// folder + separator (where needed) + name.
    std::string join(std::string_view folder, std::string_view name) const;

    /// An absolute, lexically clean form of `path`: "." and ".." and doubled separators gone, links
    /// unresolved, relative paths taken below `currentFolder`. The empty path stays empty.
    std::string absolute(std::string_view path, std::string_view currentFolder) const;
};

}  // namespace corvalence::base
