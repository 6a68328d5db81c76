#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvalence::test {

/// The path with the separators of this system.
std::string native(std::string_view path);
/// For the standard library's calls: without a closing separator, and from UTF-8 where it takes UTF-16.
std::filesystem::path fsPath(std::string_view path);
/// A folder with all that is in it; `to` must not exist.
void copyFolder(std::string_view from, std::string_view to);

/// A folder of its own below the machine's folder for temporary files, gone with all its contents at the end.
class TempFolder {
  public:
    TempFolder();
    /// The same in another folder.
    explicit TempFolder(const std::string& parent);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Absolute, without links on the way, with a closing separator.
    const std::string& path() const noexcept { return path_; }
    std::string operator/(std::string_view name) const { return path_ + native(name); }

    /// Writes a whole file, making the folders on the way, and gives its path.
    std::string write(std::string_view name, std::string_view content) const;
    /// A whole file's bytes; a test failure where it cannot be read.
    std::string read(std::string_view name) const;
    bool has(std::string_view name) const;

  private:
    std::string path_;
};

/// The same for any path.
void writeWholeFile(const std::string& path, std::string_view content);
std::string readWholeFile(const std::string& path);
/// Empty where the file cannot be opened, as somebody holds it.
std::optional<std::string> readIfOpen(const std::string& path);
/// Changes one bit of a file.
void flipByte(const std::string& path, std::size_t at = 3);

}  // namespace corvalence::test
