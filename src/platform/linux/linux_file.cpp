#include "platform/linux/linux_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <limits>

#include "platform/linux/status_query.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

/// The system counts offsets with a sign.
off_t offsetOf(std::uint64_t position, base::Cause cause, const std::string& path) {
    if (position > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
        throw base::FileFailure(cause, EINVAL, path);
    }
    return static_cast<off_t>(position);
}

}  // namespace

std::size_t LinuxFile::read(base::ByteSpan buffer) {
    std::size_t done = 0;
    while (done < buffer.size()) {
        const ssize_t count = ::read(descriptor(), buffer.data() + done, buffer.size() - done);
        if (count == 0) break;
        if (count > 0) {
            done += static_cast<std::size_t>(count);
            position_ += static_cast<std::uint64_t>(count);
            // Files of the kernel's own report no size, or one too large, and are read to their end.
            if (sizeHint_ > 0 && position_ >= sizeHint_ && done < buffer.size()) break;
        } else if (errno != EINTR) {
            throwSystemError(path_);
        }
    }
    return done;
}

void LinuxFile::write(base::ByteView bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor(), bytes.data(), bytes.size());
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            position_ += static_cast<std::uint64_t>(count);
        } else if (errno != EINTR) {
            throwSystemError(path_);
        }
    }
}

void LinuxFile::seek(std::uint64_t position) {
    if (::lseek(descriptor(), offsetOf(position, base::Cause::BadSeek, path_), SEEK_SET) < 0) {
        throw base::FileFailure(base::Cause::BadSeek, errno, path_);
    }
    position_ = position;
}

std::uint64_t LinuxFile::size() {
    struct stat data {};
    if (::fstat(descriptor(), &data) != 0) throwSystemError(path_);
    return static_cast<std::uint64_t>(data.st_size);
}

void LinuxFile::resize(std::uint64_t size) {
    const off_t length = offsetOf(size, base::Cause::DiskFull, path_);
    while (::ftruncate(descriptor(), length) != 0) {
        if (errno != EINTR) throwSystemError(path_);
    }
}

void LinuxFile::flush() {
    // The length belongs to the data here, the times do not: overwriting in place needs no journal commit.
    while (::fdatasync(descriptor()) != 0) {
        if (errno != EINTR) throwSystemError(path_);
    }
}

FileStatus LinuxFile::status() {
    FileStatus result;
    const int error = queryStatus(descriptor(), "", AT_EMPTY_PATH, lastName(path_), result);
    if (error != 0) throw failureOf(error, path_);
    return result;
}

}  // namespace corvalence::platform::linux_system
