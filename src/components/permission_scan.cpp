#include "components/permission_scan.h"

#include "base/record_text.h"

namespace corvalence::components {

namespace {
constexpr std::size_t kExamples = 100;
constexpr std::string_view kPageFile = "pagefile.sys";
}  // namespace

void NotedPaths::add(std::string_view path, std::string_view reason) {
    ++count;
    if (examples.size() < kExamples) examples.push_back({std::string(path), std::string(reason)});
}

bool PermissionScan::isPassedOver(std::string_view path) noexcept {
    return path.ends_with(kPageFile);
}

bool PermissionScan::render(std::string_view path, std::string& record) {
    // A link that took a folder's place would be followed behind a separator.
    file_.assign(path.substr(0, path.size() - (paths_.isSeparator(path.back()) ? 1 : 0)));
    record.assign(path).append(1, base::kSeparator);
    std::optional<std::vector<platform::AccessEntry>> list;
    try {
        list = lists_.read(file_);
    } catch (const base::FileFailure& failure) {
        if (!isThere(file_)) return false;
        unreadable_.add(path, base::reasonText(failure.cause()));
    }
    record += renderAccessList(list);
    return true;
}

bool PermissionScan::isThere(const std::string& file) const {
    try {
        return files_.status(file, platform::Follow::No).has_value();
    } catch (const base::FileFailure&) {
        return true;  // as nobody may say that it is gone
    }
}

void PermissionScan::addRemarks(std::vector<Remark>& remarks) const {
    addRemark(remarks, {"lists_unreadable", unreadable_.count, " access lists could not be read.",
                        unreadable_.examples, true});
}

}  // namespace corvalence::components
