#include "platform/linux/extended_attributes.h"

#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "platform/linux/attribute_query.h"
#include "platform/linux/system_error.h"

namespace corvalence::platform::linux_system {

namespace {

/// The kernel lists access lists among the attributes; they are no streams.
constexpr std::array<std::string_view, 2> kAccessLists = {"system.posix_acl_access",
                                                          "system.posix_acl_default"};

class AttributeReader : public StreamReader {
  public:
    AttributeReader(std::string path, std::vector<std::string> names)
        : path_(std::move(path)), names_(std::move(names)) {}

    bool next(StreamEntry& entry) override {
        value_.reset();
        while (at_ < names_.size()) {
            const std::string& name = names_[at_++];
            const ssize_t size = ::lgetxattr(path_.c_str(), name.c_str(), nullptr, 0);
            if (size < 0 && (errno == ENODATA || errno == ENOTSUP)) continue;  // gone, or only listed
            if (size < 0) throwSystemError(path_);
            entry = {name, static_cast<std::uint64_t>(size)};
            return true;
        }
        value_.emplace();
        position_ = 0;
        return false;
    }

    std::size_t read(base::ByteSpan buffer) override {
        if (!value_) load();
        const std::size_t count = std::min(buffer.size(), value_->size() - position_);
        if (count > 0) std::memcpy(buffer.data(), value_->data() + position_, count);
        position_ += count;
        return count;
    }

  private:
    void load() {
        position_ = 0;
        value_.emplace();
        if (at_ == 0) return;
        const char* const name = names_[at_ - 1].c_str();
        value_ = fillBuffer([this, name](char* buffer, std::size_t size) {
            return ::lgetxattr(path_.c_str(), name, buffer, size);
        });
        if (!value_) throwSystemError(path_);
    }

    std::string path_;
    std::vector<std::string> names_;
    std::size_t at_ = 0;
    std::optional<std::string> value_;  // of the attribute in front of at_, once it is read
    std::size_t position_ = 0;
};

}  // namespace

std::unique_ptr<StreamReader> ExtendedAttributes::open(const std::string& path) {
    const char* const name = systemPath(path);
    auto names =
        attributeNames([name](char* buffer, std::size_t size) { return ::llistxattr(name, buffer, size); });
    if (!names) throwSystemError(path);
    std::erase_if(*names, [](const std::string& each) {
        return std::find(kAccessLists.begin(), kAccessLists.end(), each) != kAccessLists.end();
    });
    std::sort(names->begin(), names->end());
    return std::make_unique<AttributeReader>(path, *std::move(names));
}

}  // namespace corvalence::platform::linux_system
