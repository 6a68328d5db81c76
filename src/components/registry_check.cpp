#include "components/registry_check.h"

#include "base/record_text.h"

namespace corvalence::components {

namespace {

std::string_view nameIn(std::string_view line) {
    return line.substr(0, line.find(base::kSeparator));
}

std::string_view restIn(std::string_view line) {
    return line.substr(nameIn(line).size() + 1);
}

/// The name as the comparison takes it: a default value's without its backslash, as keys are named.
std::string_view shortName(const RegistryRecord& live) {
    return live.isDefault ? live.name.substr(0, live.name.size() - 1) : live.name;
}

}  // namespace

RegistryCheck::RegistryCheck(store::Vault& vault, const Machine& machine, const std::string&,
                             BaselineFiles files)
    : vault_(vault),
      machine_(machine),
      baseline_(std::move(files)),
      isComplete_(vault.configuration.isOn(settings::key::kCompleteWalk)) {}

bool RegistryCheck::compare(platform::Progress& progress, reports::ReportSink& report) {
    lines_ = readRegistry(vault_, baseline_, &progress);
    if (report.isLasting()) findings_.tellTo(report);
    RegistryWalk walk(machine_.registry, vault_.platform.ui, progress);
    const std::size_t total = std::max<std::size_t>(lines_.size(), 1);
    const bool isWhole = walk.run([&](const RegistryRecord& live) {
        compareValue(live, progress);
        progress.bar(static_cast<std::uint32_t>(std::uint64_t{platform::Progress::kSteps} * next_ / total));
        return true;
    });
    if (!isWhole || !endLines(progress) || !verify(progress)) {
        if (report.isLasting()) findings_.write(report, [] { return true; });
        return false;
    }
    walk.addRemarks(walkRemarks_);
    return findings_.write(report, [&] { return !progress.cancelled(); }) && !progress.cancelled();
}

bool RegistryCheck::verify(platform::Progress& progress) {
    vault_.platform.ui.status(0, "Verifying...");
    return findings_.joinMoved(progress);
}

bool RegistryCheck::isInStep(std::string_view line, const RegistryRecord& live) const {
    return isComplete_ ? nameIn(line) == live.name : line.starts_with(shortName(live));
}

bool RegistryCheck::isEqual(std::string_view before, std::string_view now) const {
    return isComplete_ ? before == now : firstLine(before) == firstLine(now);
}

std::optional<std::size_t> RegistryCheck::find(const RegistryRecord& live, platform::Progress& progress) {
    if (!index_) index_.emplace(lines_, false, progress);
    // With the separator behind it, a name is found as a whole.
    const std::string name =
        isComplete_ ? std::string(live.name) + base::kSeparator : std::string(shortName(live));
    return index_->find(name, next_);
}

void RegistryCheck::compareValue(const RegistryRecord& live, platform::Progress& progress) {
    const auto add = [&] { findings_.addNew(shortName(live), live.name, live.rest); };
    if (next_ == lines_.size()) {
        isComplete_ ? add() : void(++behindEnd_);
        return;
    }
    if (!isInStep(lines_[next_], live)) {
        const auto found = find(live, progress);
        if (!found) {
            // An index that was cancelled finds nothing.
            if (!progress.cancelled()) add();
            return;
        }
        if (!missTo(*found, progress)) return;
    }
    const std::string_view line = lines_[next_++];
    if (nameIn(line) != live.name) ++byBeginning_;
    if (!isEqual(restIn(line), live.rest)) findings_.addChanged(nameIn(line), restIn(line), live.rest);
}

bool RegistryCheck::missTo(std::size_t line, platform::Progress& progress) {
    for (; next_ < line; ++next_) {
        if (progress.cancelled()) return false;
        findings_.addRemoved(nameIn(lines_[next_]), restIn(lines_[next_]));
    }
    return true;
}

bool RegistryCheck::endLines(platform::Progress& progress) {
    if (isComplete_) return missTo(lines_.size(), progress);
    leftOver_ = lines_.size() - next_;
    return true;
}

std::vector<Remark> RegistryCheck::remarks() const {
    std::vector<Remark> remarks = walkRemarks_;
    addRemark(remarks, {"behind_end",
                        behindEnd_,
                        " values behind the last record of the database were not compared.",
                        {},
                        true});
    addRemark(remarks, {"left_over",
                        leftOver_,
                        " records of the database behind the last value were not compared.",
                        {},
                        true});
    addRemark(remarks, {"by_beginning", byBeginning_, " compared with a record of a longer name.", {}, true});
    addRemark(remarks, {"malformed", lines_.malformed(), " lines of the database are no records.", {}, true});
    return remarks;
}

}  // namespace corvalence::components
