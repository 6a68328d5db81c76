#include "components/permission_creation.h"

#include "components/running_total.h"

namespace corvalence::components {

namespace {

std::vector<Count> permissionCount(std::uint64_t count) {
    return {{"permissions", count == 1 ? " access list." : " access lists.", count}};
}

}  // namespace

/// Writes the access list of what the walk meets.
class PermissionCreation::Visitor : public WalkVisitor {
  public:
    Visitor(PermissionCreation& creation, store::NewFiles& files, platform::Progress& progress)
        : records_(creation.records_),
          scan_(creation.vault_.platform, creation.machine_),
          files_(files),
          progress_(progress),
          isComplete_(creation.vault_.configuration.isOn(settings::key::kCompleteWalk)) {}

    bool beginRoot(std::size_t) override { return !progress_.cancelled(); }
    bool file(const std::string& path) override {
        if (progress_.cancelled()) return false;
        progress_.item({path});
        showTotal(progress_, kTotalFiles, ++met_);
        if (!isComplete_ && PermissionScan::isPassedOver(path)) {
            passedOver_.add(path, {});
        } else {
            record(path);
        }
        return true;
    }
    bool folder(const std::string& path) override {
        isComplete_ ? record(path) : void(++folders_);
        return !progress_.cancelled();
    }
    bool endRoot(std::size_t) override { return true; }

    void addRemarks(std::vector<Remark>& remarks) const {
        scan_.addRemarks(remarks);
        addRemark(remarks, {"lists_refused", refused_.count,
                            " access lists refused: no record can hold them.", refused_.examples, true});
        addRemark(remarks, {"vanished", vanished_, " files vanished before they could be recorded.", {}});
        addRemark(remarks, {"page_files", passedOver_.count, " passed over: names that end in pagefile.sys.",
                            passedOver_.examples});
        addRemark(remarks, {"folders", folders_, " folders passed over: lists of files are recorded.", {}});
    }

  private:
    void record(const std::string& path) {
        if (!scan_.render(path, record_)) {
            ++vanished_;
        } else if (record_.size() + 2 > kPermissionLineLimit) {
            refused_.add(path, {});
        } else {
            files_.write(0, record_);
            ++records_;
        }
    }

    std::uint64_t& records_;
    PermissionScan scan_;
    store::NewFiles& files_;
    platform::Progress& progress_;
    bool isComplete_;
    std::string record_;
    std::uint64_t met_ = 0;
    std::uint64_t folders_ = 0;
    std::uint64_t vanished_ = 0;
    NotedPaths passedOver_;
    NotedPaths refused_;
};

bool PermissionCreation::fill(const std::string& database, store::NewFiles& files,
                              platform::Progress& progress) {
    const WalkPlan plan = planWalk(vault_);
    const OwnNames own(vault_, store::DatabaseKind::Permissions, database);
    DriveWalk walk(vault_, plan, own);
    Visitor visitor(*this, files, progress);
    if (!walk.run(visitor)) return false;
    remarks_ = remarksOf(walk.account());
    visitor.addRemarks(remarks_);
    return !progress.cancelled();
}

std::vector<Count> PermissionCreation::counts() const {
    return permissionCount(records_);
}

SealedLines readPermissions(const store::Vault& vault, const BaselineFiles& files,
                            platform::Progress* progress) {
    return {vault, files.front(), {kPermissionLineLimit, isPermissionRecord}, progress};
}

std::vector<Count> countPermissions(const store::Vault& vault, const BaselineFiles& files) {
    return permissionCount(readPermissions(vault, files).size());
}

}  // namespace corvalence::components
