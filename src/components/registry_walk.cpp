#include "components/registry_walk.h"

#include "base/record_text.h"
#include "components/running_total.h"

namespace corvalence::components {

namespace {

constexpr std::size_t kExamples = 20;
constexpr std::size_t kLineEnd = 2;

/// Where this program notes the databases that were opened last: a check would change what it compares. Below
/// one user's root, or that of all users with the user's name in front.
bool isOwn(std::string_view path) {
    constexpr std::string_view kRecent = "Software\\Corvalence\\Recent File List";
    return path.ends_with(kRecent) &&
           (path.size() == kRecent.size() || path[path.size() - kRecent.size() - 1] == '\\');
}

bool canBeRecorded(std::string_view name) {
    using namespace std::string_view_literals;
    return name.find_first_of("\r\n\x7F\0"sv) == std::string_view::npos;
}

}  // namespace

bool RegistryWalk::run(const Visit& visit) {
    for (const platform::RegistryRootName& root : platform::kRegistryRoots)
        if (!walkKey(root, {}, visit)) return false;
    return true;
}

bool RegistryWalk::walkKey(const platform::RegistryRootName& root, const std::string& path,
                           const Visit& visit) {
    if (progress_.cancelled()) return false;
    if (isOwn(path)) return true;
    const std::string name = std::string(root.name) + "\\" + path;
    progress_.item({name, 0, platform::WorkItem::Kind::Other});
    platform::RegistryKeyNames below;
    {
        const auto key = registry_.open(root.root, path);
        if (!key) return hand({name, kUndefinedKey}, visit);
        if (!visitValues(*key, name, visit)) return false;
        below = key->subKeys();
    }
    if (!below.isComplete) ++incomplete_;
    for (const std::string& sub : below.names) {
        if (!canBeRecorded(sub)) {
            refuse(name + "\\" + sub);
        } else if (!walkKey(root, path.empty() ? sub : path + "\\" + sub, visit)) {
            return false;
        }
    }
    return true;
}

bool RegistryWalk::visitValues(platform::RegistryKeyReader& key, const std::string& name,
                               const Visit& visit) {
    bool isEmpty = true;
    for (; key.nextValue(value_); isEmpty = false) {
        if (progress_.cancelled()) return false;
        const std::string full = name + "\\" + value_.name;
        const auto rest = render();
        if (!rest || !canBeRecorded(full) || full.size() + rest->size() + 1 + kLineEnd > kRegistryLineLimit) {
            refuse(full);
        } else if (!hand({full, *rest, value_.name.empty()}, visit)) {
            return false;
        }
    }
    return !isEmpty || hand({name, kEmptyKey}, visit);
}

/// The value in hand; one that may take a while is told while it does.
std::optional<std::string> RegistryWalk::render() {
    const bool isLarge = isVeryLarge(value_);
    if (isLarge) ui_.status(0, "Please wait. - Very large registry value.");
    auto rest = renderRegistryValue(value_);
    if (isLarge) ui_.status(0, "");
    return rest;
}

bool RegistryWalk::hand(const RegistryRecord& record, const Visit& visit) {
    showTotal(progress_, kTotalValues, ++records_);
    return visit(record);
}

void RegistryWalk::refuse(const std::string& name) {
    ++refused_;
    if (examples_.size() < kExamples) examples_.push_back({name, {}});
}

void RegistryWalk::addRemarks(std::vector<Remark>& remarks) const {
    components::addRemark(remarks, {"refused", refused_, " keys and values refused: no record can hold them.",
                                    examples_, true});
    components::addRemark(remarks,
                          {"incomplete", incomplete_, " keys were not listed to their end.", {}, true});
}

}  // namespace corvalence::components
