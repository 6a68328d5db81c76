#include "components/drive_walk.h"

namespace corvalence::components {

namespace {
constexpr std::size_t kExamples = 100;
}  // namespace

bool isComponentPath(std::string_view path) noexcept {
    constexpr std::string_view kForbidden("\x7F\r\n\0", 4);
    return !path.empty() && path.size() <= kComponentPathLimit &&
           path.find_first_of(kForbidden) == std::string_view::npos;
}

bool isAbsoluteComponentPath(std::string_view path) noexcept {
    const bool isAbsolute =
        path.starts_with('/') || path.starts_with("\\\\") || (path.size() > 2 && path[1] == ':');
    return isAbsolute && isComponentPath(path);
}

void WalkAccount::refuse(const std::string& path) {
    ++refused;
    if (examples.size() < kExamples) examples.push_back(path);
}

DriveWalk::DriveWalk(store::Vault& vault, const WalkPlan& plan, const OwnNames& own)
    : files_(vault.platform.files),
      ui_(vault.platform.ui),
      paths_(vault.platform.paths),
      plan_(plan),
      own_(own),
      rules_(vault.platform.files, vault.configuration.isOn(settings::key::kCompleteWalk)) {
    rules_.keepOutOf(plan.barriers);
}

bool DriveWalk::run(WalkVisitor& visitor) {
    for (std::size_t root = 0; root < plan_.roots.size(); ++root) {
        if (!visitor.beginRoot(root) || !walkRoot(plan_.roots[root], visitor) || !visitor.endRoot(root))
            return false;
    }
    return true;
}

bool DriveWalk::walkRoot(const std::string& root, WalkVisitor& visitor) {
    stack_.clear();
    try {
        const auto status = files_.status(root, platform::Follow::Yes);
        auto level = status ? listed(root, status->identity) : std::nullopt;
        if (!level) throw base::FileFailure(base::Cause::BadPath, 0, root);
        stack_.push_back(std::move(*level));
    } catch (const base::FileFailure& failure) {
        noteUnreadable(root, failure.cause());
    }
    unsigned exhausted = 0;
    while (!stack_.empty()) {
        switch (visitEntries(visitor)) {
            case Step::Entered:
                exhausted = 0;
                break;
            case Step::Ended:
                return false;
            case Step::Next: {
                const std::string folder = std::move(stack_.back().path);
                stack_.pop_back();
                if (++exhausted < kClimbLimit || rules_.isComplete()) break;
                noteEnd(folder);
                stack_.clear();
            }
        }
    }
    return true;
}

DriveWalk::Step DriveWalk::visitEntries(WalkVisitor& visitor) {
    Level& level = stack_.back();
    while (level.next < level.entries.size()) {
        const Step step = visitEntry(level.entries[level.next++], visitor);
        if (step != Step::Next) return step;
    }
    return Step::Next;
}

DriveWalk::Step DriveWalk::visitEntry(const platform::FolderEntry& entry, WalkVisitor& visitor) {
    const Level& level = stack_.back();
    if (rules_.isHidden(entry.name)) {
        ++account_.passedOver.hiddenNames;
        return Step::Next;
    }
    if (isPassedOver(level, entry)) return Step::Next;
    std::string path = level.path + entry.name;
    // Who may not look at what is mounted at a folder still knows that it is one.
    const bool isFolder = files::WalkRules::isFolder(entry.status) || (entry.fault && rules_.isBarrier(path));
    if (isFolder) return visitFolder(entry, std::move(path), visitor);
    // The name is there, whatever else is not known.
    if (entry.fault) noteUnreadable(path, *entry.fault);
    if (!isComponentPath(path)) {
        account_.refuse(path);
        return Step::Next;
    }
    return visitor.file(path) ? Step::Next : Step::Ended;
}

DriveWalk::Step DriveWalk::visitFolder(const platform::FolderEntry& entry, std::string path,
                                       WalkVisitor& visitor) {
    path += paths_.separator;
    if (!isComponentPath(path)) {
        account_.refuse(path);  // with all that lies below it
        return Step::Next;
    }
    const auto may = rules_.mayEnter(path, entry.status.identity.volume, stack_.back().volume);
    if (may != files::WalkRules::Entry::Allowed) {
        if (may == files::WalkRules::Entry::PseudoFileSystem) ++account_.passedOver.pseudoFileSystems;
        return visitor.folder(path) ? Step::Next : Step::Ended;
    }
    auto level = listed(path, entry.status.identity);
    if (!level) return Step::Next;  // gone since the folder above was listed
    if (!visitor.folder(path)) return Step::Ended;
    stack_.push_back(std::move(*level));
    return Step::Entered;
}

std::optional<DriveWalk::Level> DriveWalk::listed(const std::string& path,
                                                  const platform::FileIdentity& identity) {
    Level level{path, identity.volume, {}, own_.in(identity), 0};
    try {
        level.entries = files_.list(path, platform::Detail::Folders);
    } catch (const base::FileFailure& failure) {
        if (failure.cause() == base::Cause::FileNotFound || failure.cause() == base::Cause::BadPath)
            return std::nullopt;
        noteUnreadable(path, failure.cause());
    }
    return level;
}

void DriveWalk::noteUnreadable(const std::string& path, base::Cause cause) {
    account_.passedOver.unreadable.push_back({path, std::string(base::reasonText(cause))});
}

bool DriveWalk::isPassedOver(const Level& level, const platform::FolderEntry& entry) const {
    return level.own != nullptr && level.own->contains(paths_.comparisonKey(entry.name));
}

void DriveWalk::noteEnd(const std::string& folder) {
    WalkEnd end{folder, 0, 0};
    for (const Level& level : stack_) {
        for (std::size_t at = level.next; at < level.entries.size(); ++at) {
            const platform::FolderEntry& entry = level.entries[at];
            if (rules_.isHidden(entry.name) || isPassedOver(level, entry)) continue;
            ++(files::WalkRules::isFolder(entry.status) ? end.foldersLeftOut : end.filesLeftOut);
        }
    }
    if (end.foldersLeftOut + end.filesLeftOut == 0) return;
    ui_.status(0, "The walk ended at " + folder + ": " + std::to_string(end.foldersLeftOut) +
                      " folders were left out.");
    account_.ended.push_back(std::move(end));
}

}  // namespace corvalence::components
