#include "components/file_component.h"

namespace corvalence::components {

bool FileComponentCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    findings_.emplace(report);
    check_.emplace(vault_, database_, ignores_, *findings_);
    counts_ = check_->checkAllFiles(progress).counts;
    return !counts_.cancelled;
}

std::vector<Count> FileComponentCheck::counts() const {
    const std::uint32_t changed = check_ ? check_->counts().changed : 0;
    return {{"changed", changed == 1 ? " File changed. " : " Files changed. ", changed}};
}

std::vector<Remark> FileComponentCheck::remarks() const {
    std::vector<Remark> remarks;
    addRemark(
        remarks,
        {"checked", counts_.checked, counts_.checked == 1 ? " File checked. " : " Files checked. ", {}});
    addRemark(remarks, {"unchecked", counts_.unchecked,
                        counts_.unchecked == 1 ? " File unchecked. " : " Files unchecked. ",
                        findings_ ? findings_->notChecked() : std::vector<files::UnreadableEntry>(), true});
    return remarks;
}

}  // namespace corvalence::components
