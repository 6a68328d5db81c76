#pragma once

#include "platform/stream_source.h"

namespace corvalence::platform::windows_system {

/// Streams are alternate data streams, in the order of a backup of the file. One that is stored with gaps
/// has size 0 and no bytes here, since a backup gives its parts on their own.
class BackupStreams : public StreamSource {
  public:
    std::unique_ptr<StreamReader> open(const std::string& path) override;
    bool isNotSupported(const base::FileFailure& failure) const noexcept override;
};

}  // namespace corvalence::platform::windows_system
