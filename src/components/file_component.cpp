#include "components/file_component.h"

#include "components/file_report.h"

namespace corvalence::components {

bool FileComponentCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    files::FixedReaction ignores(files::Reaction::Ignore, files::RestoreChoice::MoveChangedFile);
    FileReport findings(report);
    counts_ = files::FileContentsCheck(vault_, database_, ignores, findings).checkAllFiles(progress).counts;
    notChecked_ = findings.notChecked();
    return !counts_.cancelled;
}

std::vector<Count> FileComponentCheck::counts() const {
    return {{"changed", counts_.changed == 1 ? " File changed. " : " Files changed. ", counts_.changed}};
}

std::vector<Remark> FileComponentCheck::remarks() const {
    std::vector<Remark> remarks;
    addRemark(
        remarks,
        {"checked", counts_.checked, counts_.checked == 1 ? " File checked. " : " Files checked. ", {}});
    addRemark(remarks,
              {"unchecked", counts_.unchecked,
               counts_.unchecked == 1 ? " File unchecked. " : " Files unchecked. ", notChecked_, true});
    return remarks;
}

}  // namespace corvalence::components
