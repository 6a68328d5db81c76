#include "components/service_creation.h"

#include "components/running_total.h"
#include "components/sealed_lines.h"

namespace corvalence::components {

namespace {

std::vector<Count> serviceCount(std::uint64_t count) {
    return {{"services", count == 1 ? " service." : " services.", count}};
}

}  // namespace

std::optional<LiveServices> listServices(platform::ServiceManager& manager, platform::Progress& progress) {
    LiveServices live;
    std::vector<platform::Service> services;
    try {
        services = manager.services();
    } catch (const base::FileFailure& failure) {
        live.failure = failure.reason();
    }
    for (std::size_t at = 0; at < services.size(); ++at) {
        if (progress.cancelled()) return std::nullopt;
        progress.item({services[at].name, services.size() - at - 1, platform::WorkItem::Kind::Other});
        showTotal(progress, kTotalServices, at + 1);
        std::string record = renderService(services[at]);
        const bool fits = record.size() + 2 <= kServiceLineLimit && isServiceRecord(record);
        fits ? live.records.push_back(std::move(record)) : void(++live.refused);
    }
    return live;
}

void LiveServices::addRemarks(std::vector<Remark>& remarks) const {
    addRemark(remarks, {"refused", refused, " services refused: no record can hold them.", {}, true});
    if (failure.empty()) return;
    addRemark(remarks,
              {"not_listed", 1, " service manager gave no services.", {{"service manager", failure}}, true});
}

bool ServiceCreation::fill(const std::string&, store::NewFiles& files, platform::Progress& progress) {
    auto live = listServices(machine_.services, progress);
    if (!live) return false;
    live_ = *std::move(live);
    for (const std::string& record : live_.records) {
        if (progress.cancelled()) return false;
        files.write(0, record);
    }
    return !progress.cancelled();
}

std::vector<Count> ServiceCreation::counts() const {
    return serviceCount(live_.records.size());
}

std::vector<Remark> ServiceCreation::remarks() const {
    std::vector<Remark> remarks;
    live_.addRemarks(remarks);
    return remarks;
}

std::vector<Count> countServices(const store::Vault& vault, const BaselineFiles& files) {
    return serviceCount(SealedLines(vault, files[0], {kServiceLineLimit, isServiceRecord}).size());
}

}  // namespace corvalence::components
