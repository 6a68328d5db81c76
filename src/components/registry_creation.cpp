#include "components/registry_creation.h"

#include "base/record_text.h"

namespace corvalence::components {

namespace {

std::vector<Count> valueCount(std::uint64_t count) {
    return {{"values", " registry values.", count}};
}

}  // namespace

bool RegistryCreation::fill(const std::string&, store::NewFiles& files, platform::Progress& progress) {
    RegistryWalk walk(machine_.registry, vault_.platform.ui, progress);
    std::string line;
    const bool isWhole = walk.run([&](const RegistryRecord& record) {
        line.assign(record.name).append(1, base::kSeparator).append(record.rest);
        files.write(0, line);
        return true;
    });
    if (!isWhole) return false;
    values_ = walk.records();
    walk.addRemarks(remarks_);
    return true;
}

std::vector<Count> RegistryCreation::counts() const {
    return valueCount(values_);
}

SealedLines readRegistry(const store::Vault& vault, const BaselineFiles& files,
                         platform::Progress* progress) {
    return {
        vault, files.front(), {kRegistryLineLimit, beginsRegistryRecord, LineForm::Other::GoesOn}, progress};
}

std::vector<Count> countRegistry(const store::Vault& vault, const BaselineFiles& files) {
    return valueCount(readRegistry(vault, files).size());
}

}  // namespace corvalence::components
