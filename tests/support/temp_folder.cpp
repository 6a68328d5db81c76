#include "temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "machine.h"

namespace corvalence::test {

namespace fs = std::filesystem;

std::string native(std::string_view path) {
    std::string text(path);
    std::replace(text.begin(), text.end(), '/', static_cast<char>(fs::path::preferred_separator));
    return text;
}

fs::path fsPath(std::string_view path) {
    // Some systems' libraries find no folder by a name with a separator behind it.
    const fs::path whole = std::u8string(path.begin(), path.end());
    return whole.has_filename() || whole == whole.root_path() ? whole : whole.parent_path();
}

void copyFolder(std::string_view from, std::string_view to) {
    fs::copy(fsPath(from), fsPath(to), fs::copy_options::recursive);
}

TempFolder::TempFolder() : TempFolder(usualFolder()) {}

TempFolder::TempFolder(const std::string& parent) {
    const fs::path base = fs::canonical(parent);
    std::random_device numbers;
    fs::path folder;
    do {
        folder = base / ("corvalence-test-" + std::to_string(numbers()) + std::to_string(numbers()));
    } while (!fs::create_directory(folder));
    path_ = (folder / "").string();
}

TempFolder::~TempFolder() {
    std::error_code error;
    // A test may have closed a folder; only its owner's rights let it be emptied.
    for (fs::recursive_directory_iterator at(path_, error), end; !error && at != end; at.increment(error)) {
        if (at->is_directory(error) && !at->is_symlink(error)) {
            fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
    }
    fs::remove_all(fsPath(path_), error);
}

std::string TempFolder::write(std::string_view name, std::string_view content) const {
    const std::string path = *this / name;
    fs::create_directories(fsPath(path).parent_path());
    writeWholeFile(path, content);
    return path;
}

std::string TempFolder::read(std::string_view name) const {
    return readWholeFile(*this / name);
}

bool TempFolder::has(std::string_view name) const {
    return fs::exists(fs::symlink_status(fsPath(*this / name)));
}

void writeWholeFile(const std::string& path, std::string_view content) {
    std::ofstream file(fsPath(path), std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size())).flush();
    if (!file) ADD_FAILURE() << "cannot write " << path;
}

std::optional<std::string> readIfOpen(const std::string& path) {
    std::ifstream file(fsPath(path), std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string readWholeFile(const std::string& path) {
    const auto content = readIfOpen(path);
    if (!content) ADD_FAILURE() << "cannot read " << path;
    return content.value_or("");
}

void flipByte(const std::string& path, std::size_t at) {
    std::string bytes = readWholeFile(path);
    bytes.at(at) = static_cast<char>(bytes.at(at) ^ 0x20);
    writeWholeFile(path, bytes);
}

}  // namespace corvalence::test
