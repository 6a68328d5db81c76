#include "platform/linux/canberra_sound.h"

#include <canberra.h>
#include <dlfcn.h>
#include <link.h>

#include <chrono>
#include <memory>
#include <string_view>
#include <vector>

namespace corvalence::platform::linux_system {

namespace {

constexpr std::uint32_t kPlaying = 1;  // one sound at a time: all bear one number

constexpr int kEndingSteps = 200;
constexpr std::chrono::milliseconds kEndingStep{5};

/// Keeps the library's loaded back ends in memory: it unloads them while their threads are still returning.
void keepBackEnds() {
    std::vector<std::string> names;
    const auto collect = [](dl_phdr_info* loaded, std::size_t, void* found) {
        const std::string_view name = loaded->dlpi_name;
        if (name.find("/libcanberra-") != std::string_view::npos)
            static_cast<std::vector<std::string>*>(found)->emplace_back(name);
        return 0;
    };
    ::dl_iterate_phdr(collect, &names);
    // Not while they are gone through: that holds a lock which other threads' loading takes the other way
    // round.
    for (const std::string& name : names) {
        if (void* handle = ::dlopen(name.c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE)) ::dlclose(handle);
    }
}

struct Closer {
    void operator()(ca_context* context) const {
        ca_context_cancel(context, kPlaying);
        int plays = 1;  // its thread works on the context until this is 0
        for (int i = 0;
             i < kEndingSteps && ca_context_playing(context, kPlaying, &plays) == CA_SUCCESS && plays; ++i)
            std::this_thread::sleep_for(kEndingStep);
        ca_context_destroy(context);
    }
};
using Context = std::unique_ptr<ca_context, Closer>;

/// Empty where there is no memory for it; whether a server answers shows with the first sound.
Context openContext() {
    ca_context* context = nullptr;
    if (ca_context_create(&context) != CA_SUCCESS) return nullptr;
    ca_context_change_props(context, CA_PROP_APPLICATION_NAME, "Corvalence", CA_PROP_APPLICATION_ICON_NAME,
                            "corvalence", CA_PROP_MEDIA_ROLE, "event", nullptr);
    return Context(context);
}

}  // namespace

void CanberraSound::playResource(const std::string& name) {
    playFile(folder_ + name + ".wav");
}

void CanberraSound::playFile(const std::string& path) {
    {
        const std::lock_guard lock(mutex_);
        next_ = path;
        if (!player_.joinable()) player_ = std::jthread([this](const std::stop_token& stop) { serve(stop); });
    }
    asked_.notify_one();
}

void CanberraSound::serve(const std::stop_token& stop) {
    const Context context = openContext();
    while (context) {
        std::string path;
        {
            std::unique_lock lock(mutex_);
            if (!asked_.wait(lock, stop, [this] { return !next_.empty(); })) return;
            path.swap(next_);
        }
        ca_context_cancel(context.get(), kPlaying);
        // A file that is missing or no sound, or no device to play it on: silence.
        ca_context_play(context.get(), kPlaying, CA_PROP_MEDIA_FILENAME, path.c_str(), nullptr);
        keepBackEnds();
    }
}

}  // namespace corvalence::platform::linux_system
