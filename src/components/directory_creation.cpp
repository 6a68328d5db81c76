#include "components/directory_creation.h"

#include "components/recycled_paths.h"
#include "components/running_total.h"

namespace corvalence::components {

/// Writes what the walk meets.
class DirectoryCreation::Visitor : public WalkVisitor {
  public:
    Visitor(DirectoryCreation& creation, const WalkPlan& plan, StreamScan& scan, store::NewFiles& files,
            platform::Progress& progress)
        : totals_(creation.totals_),
          plan_(plan),
          scan_(scan),
          files_(files),
          progress_(progress),
          isComplete_(creation.vault_.configuration.isOn(settings::key::kCompleteWalk)) {}

    bool beginRoot(std::size_t) override {
        folders_.clear();
        return !progress_.cancelled();
    }
    bool file(const std::string& path) override {
        if (progress_.cancelled()) return false;
        progress_.item({path});
        showTotal(progress_, kTotalFiles, ++totals_.files);
        files_.write(directory_file::kFiles, path);
        scan_.scan(path, writeStream_);
        return true;
    }
    bool folder(const std::string& path) override {
        folders_.add(path);
        return !progress_.cancelled();
    }
    bool endRoot(std::size_t root) override {
        totals_.folders += folders_.size();
        for (std::size_t at = 0; at < folders_.size(); ++at) {
            if (progress_.cancelled()) return false;
            files_.write(directory_file::kFolders, folders_[at]);
        }
        return scan_.scanFolders(plan_.roots[root], folders_, isComplete_, writeStream_,
                                 [this] { return !progress_.cancelled(); });
    }

  private:
    DirectoryTotals& totals_;
    const WalkPlan& plan_;
    StreamScan& scan_;
    store::NewFiles& files_;
    platform::Progress& progress_;
    bool isComplete_;
    PathList folders_;
    StreamScan::Visit writeStream_ = [this](const std::string& line) {
        ++totals_.streams;
        files_.write(directory_file::kStreams, line);
    };
};

bool DirectoryCreation::fill(const std::string& database, store::NewFiles& files,
                             platform::Progress& progress) {
    const WalkPlan plan = planWalk(vault_);
    const OwnNames own(vault_, store::DatabaseKind::DirectoryStructure, database);
    DriveWalk walk(vault_, plan, own);
    StreamScan scan(machine_.streams, walk.account());
    Visitor visitor(*this, plan, scan, files, progress);
    if (!walk.run(visitor)) return false;
    remarks_ = remarksOf(walk.account());
    addRemarks(remarks_, scan);
    listRecycled(plan, files, progress);
    return !progress.cancelled();
}

void DirectoryCreation::listRecycled(const WalkPlan& plan, store::NewFiles& files,
                                     platform::Progress& progress) {
    const RecycledPaths recycled(machine_.recycleBin, plan, vault_.platform.paths, false, progress);
    Remark refused{
        "recycled_refused", 0, " items of the Recycle Bin refused: no record can hold them.", {}, true};
    for (const platform::RecycledItem& item : recycled.items()) {
        if (progress.cancelled()) return;
        if (!isComponentPath(item.originalPath)) {
            ++refused.count;
            continue;
        }
        ++totals_.recycled;
        files.write(directory_file::kRecycled, item.originalPath);
    }
    addRemark(remarks_, std::move(refused));
    addRemark(remarks_, recycled);
}

}  // namespace corvalence::components
