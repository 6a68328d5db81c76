#pragma once

#include <optional>
#include <string>
#include <vector>

#include "components/directory_baseline.h"
#include "components/directory_findings.h"
#include "components/recycled_paths.h"
#include "components/stream_scan.h"

namespace corvalence::components {

/// Walks the machine as the creation did and merges the walk with the lines of the baseline. A file of the
/// machine is in step with a line that begins with its path. With complete walks lines compare as a whole,
/// and what lies behind the end of either side is reported; otherwise it is only counted.
class DirectoryCheck : public ComponentCheck {
  public:
    DirectoryCheck(store::Vault& vault, const Machine& machine, const std::string& database,
                   BaselineFiles files);

    bool compare(platform::Progress& progress, reports::ReportSink& report) override;
    std::vector<Count> counts() const override { return findings_.counts(); }
    std::vector<Remark> remarks() const override;

  private:
    class Visitor;

    /// What was compared in part, or not at all.
    struct Uncompared {
        std::uint64_t behindEnd = 0;  // files of the machine behind the last line
        std::uint64_t leftOver = 0;   // lines behind the last file of the machine
        std::uint64_t byBeginning = 0;
        std::uint64_t elsewhere = 0;  // folders below no root
    };

    bool goesOn() const { return !progress_->cancelled(); }
    bool hasLooseOrder() const;

    // Each asks for every line whether the user wants the work to stop, and is false where that is so.

    bool load();
    bool missFilesTo(std::size_t line);
    bool compareFolders(std::size_t root, const PathList& live);
    bool findMissingFolders(const std::vector<std::size_t>& lines, const PathList& live);
    bool findNewFolders(const std::vector<std::size_t>& lines, const PathList& live);
    bool finish(bool dropsPairs);
    bool endFiles();
    bool endStreams();
    bool findRecycled();

    void compareFile(const std::string& path);
    void missFile(std::string_view line);
    void addNew(DirectoryChange change, std::string_view path);
    void compareStream(const std::string& entry);
    bool isReported(const std::vector<std::size_t>& sorted, std::string_view path) const;
    const RecycledPaths& recycled();

    store::Vault& vault_;
    const Machine& machine_;
    BaselineFiles baseline_;
    bool isComplete_;
    bool hasRecycleFolders_;
    WalkPlan plan_;
    std::optional<RecycledPaths> recycled_;

    DirectoryBaseline lines_;
    platform::Progress* progress_ = nullptr;  // of compare()
    std::optional<LineIndex> fileIndex_;
    std::optional<LineIndex> streamIndex_;
    std::vector<std::vector<std::size_t>> foldersByRoot_;  // lines of lines_.folders
    std::size_t nextFile_ = 0;
    std::size_t nextStream_ = 0;
    std::vector<bool> streamMet_;
    PathList newStreams_;

    DirectoryFindings findings_;
    Uncompared uncompared_;
    std::vector<Remark> walkRemarks_;
};

}  // namespace corvalence::components
