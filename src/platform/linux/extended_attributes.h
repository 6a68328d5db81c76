#pragma once

#include "platform/stream_source.h"

namespace corvalence::platform::linux_system {

/// Streams are extended attributes, by the bytes of their names. One that goes while they are read is left
/// out.
class ExtendedAttributes : public StreamSource {
  public:
    std::unique_ptr<StreamReader> open(const std::string& path) override;
    bool isNotSupported(const base::FileFailure&) const noexcept override { return false; }
};

}  // namespace corvalence::platform::linux_system
