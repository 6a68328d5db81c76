#include "components/file_component.h"

namespace corvalence::components {

bool FileComponentCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    findings_.emplace(report);
    check_.emplace(vault_, database_, ignores_, *findings_);
    return !check_->checkAllFiles(progress).counts.cancelled;
}

files::CheckCounts FileComponentCheck::checked() const {
    return check_ ? check_->counts() : files::CheckCounts();
}

std::vector<Count> FileComponentCheck::counts() const {
    const std::uint32_t changed = checked().changed;
    return {{"changed", changed == 1 ? " File changed. " : " Files changed. ", changed}};
}

std::vector<Remark> FileComponentCheck::remarks() const {
    std::vector<Remark> remarks;
    addRemark(
        remarks,
        {"checked", checked().checked, checked().checked == 1 ? " File checked. " : " Files checked. ", {}});
    addRemark(remarks, {"unchecked", checked().unchecked,
                        checked().unchecked == 1 ? " File unchecked. " : " Files unchecked. ",
                        findings_ ? findings_->notChecked() : std::vector<files::UnreadableEntry>(), true});
    return remarks;
}

}  // namespace corvalence::components
