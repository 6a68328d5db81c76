#include "platform/linux/account_names.h"

#include <grp.h>
#include <pwd.h>

#include <cerrno>
#include <vector>

namespace corvalence::platform::linux_system {

namespace {

/// What `query` (getpwuid_r and its like) finds under a number, by the member that holds the name.
template <typename Row, typename Query>
std::string nameOf(id_t id, Query query, char* Row::*name) {
    constexpr std::size_t kLargestRow = std::size_t{1} << 24;
    std::vector<char> buffer(4096);
    for (;;) {
        Row row{};
        Row* found = nullptr;
        const int error = query(id, &row, buffer.data(), buffer.size(), &found);
        if (error == ERANGE && buffer.size() < kLargestRow) {
            buffer.resize(buffer.size() * 4);
            continue;
        }
        if (error == EINTR) continue;
        return found == nullptr ? std::to_string(id) : std::string(found->*name);
    }
}

}  // namespace

void AccountNames::forgetOldNames() {
    const auto now = std::chrono::steady_clock::now();
    if (now - since_ < std::chrono::minutes(1)) return;
    users_.clear();
    groups_.clear();
    since_ = now;
}

const std::string& AccountNames::user(uid_t id) {
    forgetOldNames();
    const auto [place, isNew] = users_.try_emplace(id);
    if (isNew) place->second = nameOf<struct passwd>(id, ::getpwuid_r, &passwd::pw_name);
    return place->second;
}

const std::string& AccountNames::group(gid_t id) {
    forgetOldNames();
    const auto [place, isNew] = groups_.try_emplace(id);
    if (isNew) place->second = nameOf<struct group>(id, ::getgrgid_r, &::group::gr_name);
    return place->second;
}

}  // namespace corvalence::platform::linux_system
