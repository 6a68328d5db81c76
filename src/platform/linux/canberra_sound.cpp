#include "platform/linux/canberra_sound.h"

#include <canberra.h>
#include <dlfcn.h>
#include <link.h>

#include <chrono>
#include <memory>
#include <string_view>

namespace corvalence::platform::linux_system {

namespace {

constexpr std::uint32_t kPlaying = 1;  // one sound at a time: all bear one number

constexpr int kEndingSteps = 200;
constexpr std::chrono::milliseconds kEndingStep{5};

/// Keeps the library's loaded back ends in memory: it unloads them while their threads are still returning.
void keepBackEnds() {
    const auto keep = [](dl_phdr_info* loaded, std::size_t, void*) {
        if (std::string_view(loaded->dlpi_name).find("/libcanberra-") != std::string_view::npos) {
            if (void* handle = ::dlopen(loaded->dlpi_name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE))
                ::dlclose(handle);
        }
        return 0;
    };
    ::dl_iterate_phdr(keep, nullptr);
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
