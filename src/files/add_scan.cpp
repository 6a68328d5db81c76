#include "files/add_scan.h"

#include "files/file_texts.h"

namespace corvalence::files {

namespace {

constexpr std::size_t kLabelStride = 64;  // files between two drawings of the count

/// One search, from file to file.
class Search {
  public:
    Search(store::Vault& vault, const AddScanOptions& options,
           const std::function<bool(const std::string& path)>& isListed)
        : vault_(vault),
          options_(options),
          isListed_(isListed),
          content_(options.criteria, vault.platform.paths),
          progress_(vault.platform.ui.openProgress("Searching...")),
          walk_(vault.platform.files, vault.platform.paths,
                vault.configuration.isOn(settings::key::kCompleteWalk)) {}

    AddScan run(const std::string& location) {
        platform::WalkRoots roots;
        if (location == kAnyLocation) {
            roots = options_.roots ? *options_.roots : vault_.platform.volumes.walkRoots();
            walk_.keepOutOf(roots.barriers);
        } else {
            roots.roots = {location};
        }
        for (const std::string& root : roots.roots) {
            walk_.run(root, [this](const std::string& path, const platform::FileStatus& status) {
                return visit(path, status);
            });
            if (scan_.cancelled) break;
        }
        const PassedOver& walked = walk_.passedOver();
        scan_.passedOver.hiddenNames = walked.hiddenNames;
        scan_.passedOver.links = walked.links;
        scan_.passedOver.pseudoFileSystems = walked.pseudoFileSystems;
        scan_.passedOver.unreadable.insert(scan_.passedOver.unreadable.begin(), walked.unreadable.begin(),
                                           walked.unreadable.end());
        return std::move(scan_);
    }

  private:
    /// False once the user has cancelled.
    bool visit(const std::string& path, const platform::FileStatus& status) {
        if (progress_->cancelled()) return cancel();
        const platform::Platform& system = vault_.platform;
        if (!passesWithoutContent(options_.criteria, Candidate::of(path, status), system.paths, system.clock))
            return true;
        if (options_.criteria.readsContent()) {
            progress_->item({path});
            switch (testContent(path)) {
                case ContentTest::Result::Passes:
                    break;
                case ContentTest::Result::Fails:
                    return true;
                case ContentTest::Result::Cancelled:
                    return cancel();
            }
        }
        if (options_.leavesOut && options_.leavesOut(path)) return true;
        if (isListed_(path)) {
            ++scan_.listed;
            if (options_.notifyListed)
                system.ui.message(platform::Icon::Information, path + " previously listed.");
            return true;
        }
        scan_.paths.push_back(path);
        scan_.bytes += status.size;
        if (scan_.paths.size() % kLabelStride == 0)
            progress_->label(foundText(scan_.paths.size(), scan_.bytes));
        return true;
    }

    ContentTest::Result testContent(const std::string& path) {
        try {
            return content_.test(path, vault_.platform.files, *progress_);
        } catch (const base::FileFailure& failure) {
            const std::string reason(failure.reason());
            if (options_.notifyFailed) {
                vault_.platform.ui.message(platform::Icon::Warning,
                                           "Couldn't check " + path + "\nReason: " + reason);
            }
            scan_.passedOver.unreadable.push_back({path, reason});
            return ContentTest::Result::Fails;
        }
    }

    bool cancel() {
        scan_.cancelled = true;
        return false;
    }

    store::Vault& vault_;
    const AddScanOptions& options_;
    const std::function<bool(const std::string& path)>& isListed_;
    ContentTest content_;
    std::unique_ptr<platform::Progress> progress_;
    FolderWalk walk_;
    AddScan scan_;
};

}  // namespace

std::string foundText(std::uint64_t files, std::uint64_t bytes) {
    return "Number of files to be added: " + std::to_string(files) +
           "\nTotal size of files to be added: " + foundSizeText(bytes);
}

AddScan scanForFiles(store::Vault& vault, const std::string& location, const AddScanOptions& options,
                     const std::function<bool(const std::string& path)>& isListed) {
    return Search(vault, options, isListed).run(location);
}

}  // namespace corvalence::files
