// The settings file, read and written.

#include "fuzz_target.h"
#include "memory_file_system.h"
#include "platform/json_settings_store.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvalence;
    fuzz::MemoryFileSystem files;
    files.put("settings.json", {data, size});
    platform::JsonSettingsStore store(files, "settings.json");
    const std::string key = "Software\\Corvalence\\Config5";
    const std::string other = "Software\\Corvalence\\Config17";
    const auto before = store.read(other);
    store.read(key);
    if (store.write(key, "text")) {
        fuzz::require(store.read(key) == "text", "what is written is read");
        fuzz::require(store.read(other) == before, "other keys stay");
    } else {
        const auto& bytes = files.entries.at("settings.json").file->bytes;
        fuzz::require(base::textOf(bytes) == fuzz::textOf(data, size),
                      "a file that is refused stays as it is");
    }
    return 0;
}
