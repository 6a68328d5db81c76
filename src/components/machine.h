#pragma once

#include "platform/access_lists.h"
#include "platform/recycle_bin.h"
#include "platform/service_manager.h"
#include "platform/stream_source.h"
#include "platform/system_registry.h"

namespace corvalence::components {

/// What baselines record of a machine beside its files. References only; built once by a program's main.
struct Machine {
    platform::StreamSource& streams;
    platform::RecycleBin& recycleBin;
    platform::ServiceManager& services;
    platform::SystemRegistry& registry;
    platform::AccessLists& accessLists;
};

}  // namespace corvalence::components
