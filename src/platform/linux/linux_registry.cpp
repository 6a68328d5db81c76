#include "platform/linux/linux_registry.h"

#include <algorithm>
#include <cstdlib>

#include "platform/linux/machine_keys.h"

namespace corvalence::platform::linux_system {

namespace {

class KeyReader : public RegistryKeyReader {
  public:
    explicit KeyReader(KeyContent content) : content_(std::move(content)) {}

    bool nextValue(RegistryValue& value) override {
        if (next_ == content_.values.size()) return false;
        auto& [name, text] = content_.values[next_++];
        value.name = std::move(name);
        value.type = registry_type::kText;
        value.data.assign(text.text.begin(), text.text.end());
        value.text = std::move(text.text);
        value.isReadable = true;
        value.isProtected = text.isProtected;
        return true;
    }
    RegistryKeyNames subKeys() override { return {content_.subKeys, content_.isComplete}; }

  private:
    KeyContent content_;
    std::size_t next_ = 0;
};

KeyPath partsOf(const std::string& keyPath) {
    KeyPath parts;
    for (std::size_t at = 0; at < keyPath.size();) {
        const std::size_t end = std::min(keyPath.find('\\', at), keyPath.size());
        parts.push_back(keyPath.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

std::string userFolder(const char* variable, const char* belowHome) {
    if (const char* const folder = std::getenv(variable); folder != nullptr && *folder == '/') return folder;
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + belowHome : std::string();
}

}  // namespace

RegistryPlaces RegistryPlaces::ofSystem() {
    RegistryPlaces places;
    places.userConfiguration = userFolder("XDG_CONFIG_HOME", "/.config");
    const std::string data = userFolder("XDG_DATA_HOME", "/.local/share");
    if (!places.userConfiguration.empty())
        places.applicationLists.push_back(places.userConfiguration + "/mimeapps.list");
    places.applicationLists.emplace_back("/etc/xdg/mimeapps.list");
    for (const std::string& folder : {data, std::string("/usr/local/share"), std::string("/usr/share")}) {
        if (folder.empty()) continue;
        for (const char* list : {"mimeapps.list", "mimeinfo.cache"})
            places.applicationLists.push_back(folder + "/applications/" + list);
    }
    return places;
}

LinuxRegistry::LinuxRegistry(FileSystem& files, RegistryPlaces places) {
    const auto gathered = [](auto gather) { return std::make_unique<GatheredKeys>(std::move(gather)); };
    addBranch(RegistryRoot::ClassesRoot, "Applications",
              gathered([&files, places] { return applicationKeys(files, places.applicationLists); }));
    addBranch(RegistryRoot::ClassesRoot, "Types",
              gathered([&files, places] { return fileTypeKeys(files, places.mime); }));
    if (!places.userConfiguration.empty()) {
        addBranch(RegistryRoot::CurrentUser, "Configuration",
                  std::make_unique<SettingsFiles>(files, places.userConfiguration));
    }
    addBranch(RegistryRoot::LocalMachine, "Configuration",
              std::make_unique<SettingsFiles>(files, places.configuration));
    addBranch(RegistryRoot::LocalMachine, "Kernel",
              std::make_unique<KernelParameters>(files, places.proc + "/sys"));
    addBranch(RegistryRoot::Users, "Local",
              gathered([&files, places] { return accountKeys(files, places.configuration); }));
    addBranch(RegistryRoot::CurrentConfig, "Machine",
              gathered([&files, places] { return machineKeys(files, places.proc, places.sys); }));
}

void LinuxRegistry::addBranch(RegistryRoot root, std::string name, std::unique_ptr<KeyTree> tree) {
    branchesOf(root).push_back({std::move(name), std::move(tree)});
}

std::unique_ptr<RegistryKeyReader> LinuxRegistry::open(RegistryRoot root, const std::string& keyPath) {
    std::vector<Branch>& branches = branchesOf(root);
    KeyPath path = partsOf(keyPath);
    if (path.empty()) {
        KeyContent content;
        for (const Branch& branch : branches)
            content.subKeys.push_back(branch.name);
        return std::make_unique<KeyReader>(std::move(content));
    }
    const auto branch = std::find_if(branches.begin(), branches.end(),
                                     [&](const Branch& b) { return b.name == path.front(); });
    if (branch == branches.end()) return nullptr;
    path.erase(path.begin());
    auto content = branch->tree->key(path);
    return content ? std::make_unique<KeyReader>(std::move(*content)) : nullptr;
}

}  // namespace corvalence::platform::linux_system
