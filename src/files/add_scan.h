#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "files/content_test.h"
#include "files/folder_walk.h"
#include "files/location.h"
#include "store/vault.h"

namespace corvalence::files {

/// What a search for files to be added came to.
struct AddScan {
    std::vector<std::string>
        paths;                 // of the files that pass and are not listed yet, in the order of the walk
    std::uint64_t bytes = 0;   // their sizes, in all
    std::uint64_t listed = 0;  // files that pass and are listed
    PassedOver passedOver;
    bool cancelled = false;
};

struct AddScanOptions {
    Criteria criteria;
    bool notifyListed = false;  // a message for each file that is listed already
    bool notifyFailed = true;   // a message for each file whose content cannot be tested
    /// Where a search on every drive goes; the machine's own roots where it is empty.
    std::optional<platform::WalkRoots> roots;
    /// Tells files that are left out without a word, such as the installation's own.
    std::function<bool(const std::string& path)> leavesOut;
};

/// What a search found, in two lines: "Number of files to be added: 2" and "Total size of files to be added:
/// 3000 Bytes [2.93 KB]".
std::string foundText(std::uint64_t files, std::uint64_t bytes);

/// Walks all that lies below a folder, or every root of the machine for "*", and tests each file. `isListed`
/// tells a path of the database. A file whose content cannot be read fails the test and is noted among what
/// was passed over.
AddScan scanForFiles(store::Vault& vault, const std::string& location, const AddScanOptions& options,
                     const std::function<bool(const std::string& path)>& isListed);

}  // namespace corvalence::files
