#include "machine.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace corvalence::test {

namespace fs = std::filesystem;

namespace {

/// Files of tests are everybody's to read, whatever the mask of who runs them.
[[maybe_unused]] const mode_t kMaskBefore = ::umask(022);

}  // namespace

bool makeLink(const std::string& target, const std::string& link) {
    fs::create_symlink(target, link);
    return true;
}

bool makePipe(const std::string& path) {
    return ::mkfifo(path.c_str(), 0600) == 0;
}

std::string streamName(const std::string& name) {
    return "user." + name;
}

bool addStream(const std::string& path, const std::string& name) {
    return ::setxattr(path.c_str(), streamName(name).c_str(), "1", 1, 0) == 0;
}

bool removeStream(const std::string& path, const std::string& name) {
    return ::removexattr(path.c_str(), streamName(name).c_str()) == 0;
}

void setReadOnly(const std::string& path, bool readOnly) {
    constexpr auto kAll = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    fs::permissions(path, readOnly ? kAll : fs::perms::owner_write,
                    readOnly ? fs::perm_options::remove : fs::perm_options::add);
}

bool isOwnersAlone(const std::string& path) {
    const auto wanted =
        fs::is_directory(path) ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write;
    return fs::status(path).permissions() == wanted;
}

bool canBeNamed(const std::string&) {
    return true;
}

std::string deviceFile() {
    return "/dev/null";
}

bool isEmulated() {
    return false;
}

std::string usualFolder() {
    return fs::temp_directory_path().string();
}

std::string otherVolume() {
    return quickFolder();
}

std::string shortFolder() {
    return "/tmp/";
}

std::string quickFolder() {
    constexpr std::uintmax_t kEnough = 48 << 20;  // some containers give less
    const char* const memory = "/dev/shm";
    std::error_code error;
    const fs::space_info space = fs::space(memory, error);
    const bool isUsable = !error && space.available >= kEnough && ::access(memory, W_OK) == 0;
    return isUsable ? memory : fs::temp_directory_path().string();
}

}  // namespace corvalence::test
