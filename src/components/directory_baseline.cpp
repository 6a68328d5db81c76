#include "components/directory_baseline.h"

#include "base/record_text.h"

namespace corvalence::components {

namespace {

constexpr std::size_t kStreamLineLimit = 4096;

bool isStreamLine(std::string_view line) {
    const std::size_t at = line.find(base::kSeparator);
    return at != std::string_view::npos && isAbsoluteComponentPath(line.substr(0, at)) &&
           isComponentPath(line.substr(at + 1));
}

const LineForm kPathForm = {base::kLineLimit, isAbsoluteComponentPath};
const LineForm kStreamForm = {kStreamLineLimit, isStreamLine};

}  // namespace

DirectoryBaseline::DirectoryBaseline(const store::Vault& vault, const BaselineFiles& from,
                                     platform::Progress* progress)
    : files(vault, from[directory_file::kFiles], kPathForm, progress),
      folders(vault, from[directory_file::kFolders], kPathForm, progress),
      streams(vault, from[directory_file::kStreams], kStreamForm, progress),
      recycled(vault, from[directory_file::kRecycled], kPathForm, progress) {}

std::uint64_t DirectoryBaseline::malformed() const noexcept {
    return files.malformed() + folders.malformed() + streams.malformed() + recycled.malformed();
}

std::vector<Count> DirectoryTotals::counts() const {
    return {{"files", " files.", files},
            {"directories", " directories.", folders},
            {"streams", " Alternate Data Streams.", streams},
            {"recycled", " items in the Recycle Bin.", recycled}};
}

std::vector<Count> countDirectories(const store::Vault& vault, const BaselineFiles& files) {
    const DirectoryBaseline baseline(vault, files);
    return DirectoryTotals{baseline.files.size(), baseline.folders.size(), baseline.streams.size(),
                           baseline.recycled.size()}
        .counts();
}

}  // namespace corvalence::components
