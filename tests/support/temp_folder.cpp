#include "temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace corvalence::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() : TempFolder(fs::temp_directory_path().string()) {}

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
    fs::remove_all(path_, error);
}

std::string TempFolder::write(std::string_view name, std::string_view content) const {
    const std::string path = *this / name;
    fs::create_directories(fs::path(path).parent_path());
    writeWholeFile(path, content);
    return path;
}

std::string TempFolder::read(std::string_view name) const {
    return readWholeFile(*this / name);
}

bool TempFolder::has(std::string_view name) const {
    return fs::exists(fs::symlink_status(*this / name));
}

void writeWholeFile(const std::string& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size())).flush();
    if (!file) ADD_FAILURE() << "cannot write " << path;
}

std::string readWholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) ADD_FAILURE() << "cannot read " << path;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace corvalence::test
