#pragma once

#include <functional>
#include <string>
#include <vector>

#include "components/component_check.h"
#include "components/registry_record.h"
#include "platform/system_registry.h"

namespace corvalence::components {

/// A value of the registry, or what stands for a key without one.
struct RegistryRecord {
    std::string_view name;  // root, key and value; a default value's ends in a backslash
    std::string_view rest;  // type and data, with the separator between them
    bool isDefault = false;
};

/// Walks all values of the registry below its five roots, as creation and check take them: the values of a
/// key, then the keys below it, each in the order of the system.
class RegistryWalk {
  public:
    /// Answers false to end the walk.
    using Visit = std::function<bool(const RegistryRecord& record)>;

    RegistryWalk(platform::SystemRegistry& registry, platform::UserInterface& ui,
                 platform::Progress& progress)
        : registry_(registry), ui_(ui), progress_(progress) {}

    /// False where the user cancelled, or the visitor ended the walk.
    bool run(const Visit& visit);

    /// What could not be recorded.
    void addRemarks(std::vector<Remark>& remarks) const;
    std::uint64_t records() const noexcept { return records_; }

  private:
    bool walkKey(const platform::RegistryRootName& root, const std::string& path, const Visit& visit);
    bool visitValues(platform::RegistryKeyReader& key, const std::string& name, const Visit& visit);
    bool hand(const RegistryRecord& record, const Visit& visit);
    std::optional<std::string> render();
    void refuse(const std::string& name);

    platform::SystemRegistry& registry_;
    platform::UserInterface& ui_;
    platform::Progress& progress_;
    platform::RegistryValue value_;
    std::uint64_t records_ = 0;
    std::uint64_t refused_ = 0;
    std::uint64_t incomplete_ = 0;  // keys of which not all below them could be listed
    std::vector<files::UnreadableEntry> examples_;
};

}  // namespace corvalence::components
