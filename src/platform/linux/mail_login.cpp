#include "platform/linux/mail_login.h"

#include <fcntl.h>
#include <string.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

constexpr std::size_t kLimit = 4096;

/// Overwritten when it goes.
struct Content {
    std::array<char, kLimit> bytes{};
    std::size_t size = 0;
    ~Content() { ::explicit_bzero(bytes.data(), bytes.size()); }
};

void refuseOpenToOthers(const Descriptor& file, const std::string& path) {
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) throwSystemError(path);
    if (!S_ISREG(status.st_mode)) throw std::runtime_error(path + " is no file.");
    // An access list that lets somebody else in shows in the bits of the group.
    if ((status.st_mode & 077U) != 0) {
        throw std::runtime_error(path +
                                 " is open to others than its owner; its mode has to be 0600 or 0400.");
    }
    if (status.st_uid != 0 && status.st_uid != ::geteuid())
        throw std::runtime_error(path + " belongs to another user.");
}

void readWhole(const Descriptor& file, const std::string& path, Content& content) {
    while (content.size < kLimit) {
        const ssize_t count =
            ::read(file.number(), content.bytes.data() + content.size, kLimit - content.size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throwSystemError(path);
        if (count == 0) return;
        content.size += static_cast<std::size_t>(count);
    }
    throw std::runtime_error(path + " is too long for a user and a password.");
}

/// The next line, without its end; false where there is none.
bool takeLine(std::string_view& text, std::string_view& line) {
    if (text.empty()) return false;
    const std::size_t feed = text.find('\n');
    line = text.substr(0, feed);
    text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    for (const char c : line)
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) return false;
    return true;
}

}  // namespace

MailLogin::MailLogin(const std::string& path) {
    const Descriptor file(::open(systemPath(path), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    if (!file.isOpen()) throwSystemError(path);
    refuseOpenToOthers(file, path);
    Content content;
    readWhole(file, path, content);
    std::string_view rest(content.bytes.data(), content.size);
    std::string_view user;
    std::string_view password;
    if (!takeLine(rest, user) || user.empty() || !takeLine(rest, password)) {
        throw std::runtime_error(path +
                                 " has to hold the user's name in its first line and the password in "
                                 "its second, without control characters.");
    }
    user_ = user;
    password_ = password;
}

MailLogin::~MailLogin() {
    ::explicit_bzero(password_.data(), password_.size());
}

}  // namespace corvalence::platform::linux_system
