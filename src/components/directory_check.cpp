#include "components/directory_check.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <unordered_set>

#include "base/record_text.h"
#include "components/cancellable_sort.h"
#include "components/running_total.h"

namespace corvalence::components {

namespace {

constexpr std::size_t kBarInterval = 10;

/// "path:name" of a line of a stream list.
std::string streamPath(std::string_view line) {
    std::string path(line);
    std::replace(path.begin(), path.end(), base::kSeparator, ':');
    return path;
}

}  // namespace

/// Takes what the walk meets through the comparison.
class DirectoryCheck::Visitor : public WalkVisitor {
  public:
    Visitor(DirectoryCheck& check, StreamScan& scan, platform::Progress& progress)
        : check_(check),
          scan_(scan),
          progress_(progress),
          total_(std::max<std::size_t>(check.lines_.files.size(), 1)) {}

    bool beginRoot(std::size_t) override {
        folders_.clear();
        return !progress_.cancelled();
    }
    bool file(const std::string& path) override {
        if (progress_.cancelled()) return false;
        progress_.item({path, check_.lines_.files.size() - check_.nextFile_});
        check_.compareFile(path);
        scan_.scan(path, compareStream_);
        showTotal(progress_, kTotalFiles, ++met_);
        if (met_ % kBarInterval == 0) {
            const std::size_t position = std::min(met_, total_) * platform::Progress::kSteps / total_;
            progress_.bar(static_cast<std::uint32_t>(position));
        }
        return true;
    }
    bool folder(const std::string& path) override {
        folders_.add(path);
        return !progress_.cancelled();
    }
    bool endRoot(std::size_t root) override {
        return check_.compareFolders(root, folders_) &&
               scan_.scanFolders(check_.plan_.roots[root], folders_, check_.isComplete_, compareStream_,
                                 [this] { return !progress_.cancelled(); });
    }

  private:
    DirectoryCheck& check_;
    StreamScan& scan_;
    platform::Progress& progress_;
    std::size_t total_;
    std::size_t met_ = 0;
    PathList folders_;
    StreamScan::Visit compareStream_ = [this](const std::string& line) { check_.compareStream(line); };
};

DirectoryCheck::DirectoryCheck(store::Vault& vault, const Machine& machine, const std::string&,
                               BaselineFiles files)
    : vault_(vault),
      machine_(machine),
      baseline_(std::move(files)),
      isComplete_(vault.configuration.isOn(settings::key::kCompleteWalk)),
      hasRecycleFolders_(vault.platform.paths.separator == '\\'),
      plan_(planWalk(vault)) {}

bool DirectoryCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    progress_ = &progress;
    if (!load()) return false;
    // What a later pass may take back is told once it has; anything else as it is found.
    const bool dropsPairs = hasLooseOrder();
    if (!dropsPairs) findings_.tellTo(report);
    const OwnNames own(vault_);
    DriveWalk walk(vault_, plan_, own);
    StreamScan scan(machine_.streams, walk.account());
    Visitor visitor(*this, scan, progress);
    if (!walk.run(visitor) || !finish(dropsPairs)) {
        if (report.isLasting()) findings_.write(report, [] { return true; });
        return false;
    }
    walkRemarks_ = remarksOf(walk.account());
    addRemarks(walkRemarks_, scan);
    return findings_.write(report, [this] { return goesOn(); }) && goesOn();
}

/// Whether the volume may list its entries in another order each time.
bool DirectoryCheck::hasLooseOrder() const {
    platform::Volumes& volumes = vault_.platform.volumes;
    return !volumes.keepsAccessLists(
        volumes.rootOf(vault_.configuration.folder(settings::key::kInstallDirectory)));
}

bool DirectoryCheck::finish(bool dropsPairs) {
    platform::UserInterface& ui = vault_.platform.ui;
    if (!endFiles()) return false;
    ui.status(0, "Checking For Alternate Data Stream Differences...");
    if (!endStreams()) return false;
    ui.status(0, "Checking For Files Created Then Moved To Recycle Bin Between Database Checks...");
    if (!findRecycled()) return false;
    if (!dropsPairs) return true;
    ui.status(0, "Adjusting For FAT32 Files...");
    return findings_.dropPairs(*progress_);
}

bool DirectoryCheck::load() {
    lines_ = DirectoryBaseline(vault_, baseline_, progress_);
    streamMet_.assign(lines_.streams.size(), false);
    foldersByRoot_.resize(plan_.roots.size());
    for (std::size_t line = 0; line < lines_.folders.size(); ++line) {
        if (!goesOn()) return false;
        if (const auto root = plan_.rootOf(lines_.folders[line], vault_.platform.paths)) {
            foldersByRoot_[*root].push_back(line);
        } else {
            ++uncompared_.elsewhere;
        }
    }
    return goesOn();
}

const RecycledPaths& DirectoryCheck::recycled() {
    if (!recycled_) {
        recycled_.emplace(machine_.recycleBin, plan_, vault_.platform.paths, isComplete_, *progress_);
    }
    return *recycled_;
}

void DirectoryCheck::addNew(DirectoryChange change, std::string_view path) {
    if (!hasRecycleFolders_ || !isInRecycleFolder(path)) findings_.add(change, path);
}

void DirectoryCheck::compareFile(const std::string& path) {
    if (nextFile_ == lines_.files.size()) {
        isComplete_ ? addNew(DirectoryChange::FileAdded, path) : void(++uncompared_.behindEnd);
        return;
    }
    const auto isInStep = [&](std::string_view line) {
        return isComplete_ ? line == path : line.starts_with(path);
    };
    if (!isInStep(lines_.files[nextFile_])) {
        if (!fileIndex_) fileIndex_.emplace(lines_.files, isComplete_, *progress_);
        const auto found = fileIndex_->find(path, nextFile_);
        if (!found) {
            // An index that was cancelled finds nothing.
            if (!progress_->cancelled()) addNew(DirectoryChange::FileAdded, path);
            return;
        }
        if (!missFilesTo(*found)) return;
    }
    if (lines_.files[nextFile_].size() != path.size()) ++uncompared_.byBeginning;
    ++nextFile_;
}

void DirectoryCheck::missFile(std::string_view line) {
    findings_.add(recycled().has(line) ? DirectoryChange::FileRecycled : DirectoryChange::FileRemoved, line);
}

bool DirectoryCheck::missFilesTo(std::size_t line) {
    for (; nextFile_ < line; ++nextFile_) {
        if (!goesOn()) return false;
        missFile(lines_.files[nextFile_]);
    }
    return true;
}

bool DirectoryCheck::endFiles() {
    if (isComplete_) return missFilesTo(lines_.files.size());
    uncompared_.leftOver = lines_.files.size() - nextFile_;
    return true;
}

bool DirectoryCheck::compareFolders(std::size_t root, const PathList& live) {
    const std::vector<std::size_t>& lines = foldersByRoot_[root];
    bool isEqual = lines.size() == live.size();
    for (std::size_t at = 0; isEqual && at < lines.size(); ++at)
        isEqual = lines_.folders[lines[at]] == live[at];
    return isEqual || (findMissingFolders(lines, live) && findNewFolders(lines, live));
}

bool DirectoryCheck::findMissingFolders(const std::vector<std::size_t>& lines, const PathList& live) {
    std::unordered_set<std::string_view> present;
    for (std::size_t at = 0; at < live.size(); ++at) {
        if (!goesOn()) return false;
        present.insert(live[at]);
    }
    for (const std::size_t line : lines) {
        if (!goesOn()) return false;
        if (present.contains(lines_.folders[line])) continue;
        const bool isRecycled = recycled().has(lines_.folders[line]);
        findings_.add(isRecycled ? DirectoryChange::FolderRecycled : DirectoryChange::FolderRemoved,
                      lines_.folders[line]);
    }
    return true;
}

bool DirectoryCheck::findNewFolders(const std::vector<std::size_t>& lines, const PathList& live) {
    std::vector<std::string_view> sorted;
    for (const std::size_t line : lines)
        sorted.push_back(lines_.folders[line]);
    if (!sortUnlessCancelled(sorted.begin(), sorted.end(), std::less<>(), *progress_)) return false;
    for (std::size_t at = 0; at < live.size(); ++at) {
        if (!goesOn()) return false;
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), live[at]);
        const bool isListed =
            found != sorted.end() && (isComplete_ ? *found == live[at] : found->starts_with(live[at]));
        if (!isListed) addNew(DirectoryChange::FolderAdded, live[at]);
    }
    return true;
}

void DirectoryCheck::compareStream(const std::string& entry) {
    if (nextStream_ < lines_.streams.size() && lines_.streams[nextStream_] == entry) {
        streamMet_[nextStream_++] = true;
        return;
    }
    if (!streamIndex_) streamIndex_.emplace(lines_.streams, false, *progress_);
    if (const auto line = streamIndex_->equal(entry)) {
        streamMet_[*line] = true;
        nextStream_ = *line + 1;
    } else if (!isComplete_ && streamIndex_->has(entry)) {
        ++uncompared_.byBeginning;
    } else {
        newStreams_.add(entry);
    }
}

bool DirectoryCheck::endStreams() {
    for (std::size_t line = 0; line < lines_.streams.size(); ++line) {
        if (!goesOn()) return false;
        if (!streamMet_[line])
            findings_.add(DirectoryChange::StreamRemoved, streamPath(lines_.streams[line]));
    }
    for (std::size_t at = 0; at < newStreams_.size(); ++at) {
        if (!goesOn()) return false;
        findings_.add(DirectoryChange::StreamAdded, streamPath(newStreams_[at]));
    }
    return true;
}

bool DirectoryCheck::findRecycled() {
    std::unordered_set<std::string_view> before;
    for (std::size_t line = 0; line < lines_.recycled.size(); ++line) {
        if (!goesOn()) return false;
        before.insert(lines_.recycled[line]);
    }
    std::vector<std::size_t> sorted(findings_.size());
    std::iota(sorted.begin(), sorted.end(), std::size_t{0});
    const auto less = [&](std::size_t a, std::size_t b) { return findings_.path(a) < findings_.path(b); };
    if (!sortUnlessCancelled(sorted.begin(), sorted.end(), less, *progress_)) return false;
    std::set<std::string_view> told;  // here, one behind the other
    for (const platform::RecycledItem& item : recycled().items()) {
        if (!goesOn()) return false;
        const std::string& path = item.originalPath;
        if (!isComponentPath(path) || before.contains(path) || told.contains(path) ||
            isReported(sorted, path)) {
            continue;
        }
        findings_.add(item.isFolder ? DirectoryChange::FolderCreatedAndRecycled
                                    : DirectoryChange::FileCreatedAndRecycled,
                      path);
        told.insert(path);
    }
    return true;
}

bool DirectoryCheck::isReported(const std::vector<std::size_t>& sorted, std::string_view path) const {
    const auto first =
        std::lower_bound(sorted.begin(), sorted.end(), path,
                         [&](std::size_t at, std::string_view value) { return findings_.path(at) < value; });
    for (auto at = first; at != sorted.end() && findings_.path(*at).starts_with(path); ++at) {
        if (!isComplete_) return true;
        const DirectoryChange change = findings_.change(*at);
        const std::string_view rest = findings_.path(*at).substr(path.size());
        const bool isMove =
            change == DirectoryChange::FileRecycled || change == DirectoryChange::FolderRecycled;
        if (isMove && (rest.empty() || vault_.platform.paths.isSeparator(rest.front()))) return true;
    }
    return false;
}

std::vector<Remark> DirectoryCheck::remarks() const {
    std::vector<Remark> remarks = walkRemarks_;
    addRemark(remarks, {"behind_end",
                        uncompared_.behindEnd,
                        " files behind the last line of the database were not compared.",
                        {},
                        true});
    addRemark(remarks, {"left_over",
                        uncompared_.leftOver,
                        " lines of the database behind the last file were not compared.",
                        {},
                        true});
    addRemark(remarks, {"by_beginning",
                        uncompared_.byBeginning,
                        " compared with the beginning of a longer line only.",
                        {},
                        true});
    addRemark(remarks, {"elsewhere",
                        uncompared_.elsewhere,
                        " directories of the database lie below no folder that is walked.",
                        {},
                        true});
    addRemark(remarks, {"malformed", lines_.malformed(), " lines of the database are no records.", {}, true});
    if (recycled_) addRemark(remarks, *recycled_);
    return remarks;
}

}  // namespace corvalence::components
