#pragma once

#include "components/kinds.h"
#include "components/sealed_lines.h"

namespace corvalence::components {

/// The files of a directory structure baseline, by their place in its list of files.
namespace directory_file {
inline constexpr std::size_t kFiles = 0;
inline constexpr std::size_t kFolders = 1;
inline constexpr std::size_t kStreams = 2;
inline constexpr std::size_t kRecycled = 3;
}  // namespace directory_file

/// The four lists of a directory structure baseline.
struct DirectoryBaseline {
    DirectoryBaseline() = default;
    /// Throws files::DatabaseChanged, base::FileFailure.
    DirectoryBaseline(const store::Vault& vault, const BaselineFiles& files,
                      platform::Progress* progress = nullptr);

    SealedLines files;
    SealedLines folders;
    SealedLines streams;
    SealedLines recycled;

    std::uint64_t malformed() const noexcept;
};

/// What a creation recorded, or a database lists.
struct DirectoryTotals {
    std::uint64_t files = 0;
    std::uint64_t folders = 0;
    std::uint64_t streams = 0;
    std::uint64_t recycled = 0;

    std::vector<Count> counts() const;
};

std::vector<Count> countDirectories(const store::Vault& vault, const BaselineFiles& files);

}  // namespace corvalence::components
