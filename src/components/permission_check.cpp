#include "components/permission_check.h"

#include "components/permission_creation.h"
#include "components/running_total.h"

namespace corvalence::components {

namespace {
constexpr std::size_t kBarInterval = 10;
}  // namespace

PermissionCheck::PermissionCheck(store::Vault& vault, const Machine& machine, const std::string&,
                                 BaselineFiles files)
    : vault_(vault),
      baseline_(std::move(files)),
      isComplete_(vault.configuration.isOn(settings::key::kCompleteWalk)),
      scan_(vault.platform, machine) {}

bool PermissionCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    lines_ = readPermissions(vault_, baseline_, &progress);
    const std::uint64_t count = lines_.size();
    for (std::size_t at = 0; at < count; ++at) {
        if (progress.cancelled()) return false;
        progress.item({permissionPath(lines_[at]), count - at - 1});
        showTotal(progress, kTotalFiles, at + 1);
        compareRecord(lines_[at], report);
        if (at % kBarInterval == 0)
            progress.bar(static_cast<std::uint32_t>(platform::Progress::kSteps * at / count));
    }
    return !progress.cancelled();
}

void PermissionCheck::compareRecord(std::string_view before, reports::ReportSink& report) {
    const std::string_view path = permissionPath(before);
    if (!isComplete_ && PermissionScan::isPassedOver(path)) return passedOver_.add(path, {});
    if (!scan_.render(path, now_)) return unchecked_.add(path, base::reasonText(base::Cause::FileNotFound));
    ++checked_;
    if (before == now_) return;
    ++changed_;
    report.addLine(before);
    report.addLine(now_);
}

std::vector<Count> PermissionCheck::counts() const {
    return {{"changed", " File Permissions changed. ", changed_}};
}

std::vector<Remark> PermissionCheck::remarks() const {
    const std::uint64_t unchanged = checked_ - changed_;
    std::vector<Remark> remarks;
    addRemark(remarks, {"checked", checked_, " File Permissions checked. ", {}});
    addRemark(remarks,
              {"unchecked", unchecked_.count, " File Permissions unchecked. ", unchecked_.examples, true});
    // Both texts stand as they are given: the plural is not that of the other counters.
    addRemark(remarks, {"unchanged",
                        unchanged,
                        unchanged == 1 ? " File Permissions unchanged. " : " Files Permissions unchanged. ",
                        {}});
    scan_.addRemarks(remarks);
    addRemark(remarks, {"page_files", passedOver_.count, " not compared: names that end in pagefile.sys.",
                        passedOver_.examples});
    addRemark(remarks, {"malformed", lines_.malformed(), " lines of the database are no records.", {}, true});
    return remarks;
}

}  // namespace corvalence::components
