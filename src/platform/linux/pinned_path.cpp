#include "platform/linux/pinned_path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

/// As many links as the system itself follows on one path.
constexpr int kLinkLimit = 40;

class LinuxPinnedFolder : public PinnedFolder {
  public:
    LinuxPinnedFolder(Descriptor folder, std::string resolved)
        : folder_(std::move(folder)), path_(folder_.pinnedPath() + "/"), resolved_(std::move(resolved)) {}

    const std::string& path() const noexcept override { return path_; }
    const std::string& resolvedPath() const noexcept override { return resolved_; }

  private:
    Descriptor folder_;
    std::string path_;
    std::string resolved_;
};

}  // namespace

PathWalk::PathWalk(const std::string& file) : file_(file) {
    systemPath(file_);
    root_ = Descriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!root_.isOpen()) throwSystemError(file_);
    enqueue(file_);
}

int PathWalk::current() const noexcept {
    return steps_.empty() ? root_.number() : steps_.back().folder.number();
}

/// Puts the components of a path in front of those that wait. A closing slash counts as a last component ".".
void PathWalk::enqueue(std::string_view path) {
    std::vector<std::string> components;
    for (std::size_t at = 0; at <= path.size();) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        if (end > at) components.emplace_back(path.substr(at, end - at));
        at = end + 1;
    }
    if (path.empty() || path.back() == '/') components.emplace_back(".");
    rest_.insert(rest_.begin(), components.begin(), components.end());
}

Descriptor PathWalk::open(const std::string& component, mode_t& mode, uid_t& owner) const {
    Descriptor found(::openat(current(), component.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!found.isOpen()) {
        if (errno == ENOENT) return found;
        throwSystemError(file_);
    }
    struct stat data {};
    if (::fstat(found.number(), &data) != 0) throwSystemError(file_);
    mode = data.st_mode;
    owner = data.st_uid;
    return found;
}

void PathWalk::follow(const Descriptor& link, uid_t owner) {
    if (owner != 0 && owner != ::geteuid()) throw failureOf(EACCES, file_);
    if (++links_ > kLinkLimit) throw failureOf(ELOOP, file_);
    std::string target(PATH_MAX, '\0');
    const ssize_t length = ::readlinkat(link.number(), "", target.data(), target.size());
    if (length < 0) throwSystemError(file_);
    if (static_cast<std::size_t>(length) == target.size()) throw failureOf(ENAMETOOLONG, file_);
    target.resize(static_cast<std::size_t>(length));
    if (target.front() == '/') steps_.clear();
    enqueue(target);
}

std::unique_ptr<PinnedFolder> PathWalk::finish(std::string& name) {
    while (!rest_.empty()) {
        const std::string component = std::move(rest_.front());
        rest_.pop_front();
        if (component == "." || component == "..") {
            // Back to the folder that is held, not to whatever the folder's parent has become.
            if (component == ".." && !steps_.empty()) steps_.pop_back();
            continue;
        }
        mode_t mode = 0;
        uid_t owner = 0;
        Descriptor found = open(component, mode, owner);
        if (found.isOpen() && S_ISLNK(mode)) {
            follow(found, owner);
        } else if (rest_.empty()) {
            name = component;
            std::string resolved = "/";
            for (const Step& step : steps_)
                resolved += step.name + "/";
            return std::make_unique<LinuxPinnedFolder>(
                steps_.empty() ? std::move(root_) : std::move(steps_.back().folder), resolved);
        } else if (!found.isOpen()) {
            throw failureOf(ENOENT, file_);
        } else if (!S_ISDIR(mode)) {
            throw failureOf(ENOTDIR, file_);
        } else {
            steps_.push_back({component, std::move(found)});
        }
    }
    throw failureOf(EISDIR, file_);  // the path leads to a folder by name ("." or ".." at its end)
}

}  // namespace corvalence::platform::linux_system
