#include "baseline_world.h"

#include <algorithm>
#include <filesystem>

#include "reports/report_writer.h"

namespace corvalence::test {

BaselineWorld::BaselineWorld(store::DatabaseKind wanted) : kind(*components::findComponentKind(wanted)) {
    world.set(settings::key::kWalkRoots, world.path(""));
}

BaselineOutcome BaselineWorld::create(const std::string& name) {
    store::CreationRequest request;
    request.location = world.data("Databases");
    request.name = name;
    request.kind = kind.kind;
    const auto creation = kind.makeCreation(world.vault(), machine);
    BaselineOutcome outcome;
    outcome.opened =
        components::createDatabase(world.vault(), kind, request, *creation, outcome.cancelled).has_value();
    take(outcome, creation->counts(), creation->remarks());
    return outcome;
}

BaselineOutcome BaselineWorld::check(const std::string& name) {
    BaselineOutcome outcome;
    const auto opened = world.open(name);
    outcome.opened = opened == store::OpenResult::Opened || opened == store::OpenResult::Restored;
    if (!outcome.opened) return outcome;
    const auto checked = components::checkDatabase(world.vault(), machine, kind, world.context());
    outcome.cancelled = checked.cancelled;
    take(outcome, checked.counts, checked.remarks);
    if (!checked.cancelled) outcome.lines = report();
    return outcome;
}

std::vector<std::string> BaselineWorld::toldUntil(std::uint64_t at) {
    struct Ended {};
    world.open("base");
    const auto baseline = components::makeBaselineCheck(world.vault(), machine, kind, store::Form::Standalone,
                                                        world.context().record);
    LastingLines log;
    std::uint64_t questions = 0;
    world.machine.ui.meanwhile = [&] {
        if (++questions == at) throw Ended();
    };
    try {
        const auto progress = world.platform.ui.openProgress({});
        components::compareBaseline(world.vault(), baseline.file, *baseline.check, *progress, log);
    } catch (const Ended&) {
        // as by force
    }
    world.machine.ui.meanwhile = {};
    return log.lines;
}

std::map<std::string, std::uint64_t> BaselineWorld::questionsOfACheck() {
    std::map<std::string, std::uint64_t> questions;
    world.machine.ui.meanwhile = [&] { ++questions[world.machine.ui.statuses.back()]; };
    check();
    world.machine.ui.meanwhile = {};
    return questions;
}

std::vector<std::string> BaselineWorld::report() {
    std::vector<std::string> lines;
    const auto file =
        reports::ReportFile::open(world.vault(), reports::reportPath(world.configuration(), kind.report));
    if (!file) return lines;
    const auto renderer = kind.makeRenderer(world.platform.paths);
    for (std::size_t number = 0; number < file->lines().size(); ++number) {
        const auto fields = renderer->fields(number, file->lines()[number]);
        lines.push_back(fields.size() < 2 ? "?" : fields[0].value + " " + shown(fields[1].value));
    }
    return lines;
}

std::string BaselineWorld::shown(std::string_view path) const {
    const std::string root = world.path("");
    std::string text(path.starts_with(root) ? path.substr(root.size()) : path);
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

void BaselineWorld::remove(const std::string& name) const {
    std::filesystem::remove_all(fsPath(world.path(name)));
}

void BaselineWorld::makeFolder(const std::string& name) const {
    std::filesystem::create_directories(fsPath(world.path(name)));
}

void BaselineWorld::take(BaselineOutcome& outcome, const std::vector<components::Count>& counts,
                         const std::vector<components::Remark>& remarks) {
    for (const components::Count& count : counts) {
        if (count.count > 0) outcome.counts[std::string(count.name)] = count.count;
    }
    for (const components::Remark& remark : remarks) {
        outcome.remarks[std::string(remark.name)] = remark.count;
        if (!remark.isFault) continue;
        outcome.faults[std::string(remark.name)] = remark.count;
        for (const files::UnreadableEntry& detail : remark.details)
            outcome.details.push_back(detail.path + " " + detail.reason);
    }
}

}  // namespace corvalence::test
