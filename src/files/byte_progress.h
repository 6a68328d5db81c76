#pragma once

#include <cstdint>

#include "platform/user_interface.h"

namespace corvalence::files {

/// Moves a progress bar and its label of remaining bytes by the bytes that work gets through, redrawing no
/// more often than every 64000 bytes, or every 640000 where the total is so large that a step would not be
/// seen.
class ByteProgress {
  public:
    ByteProgress(platform::Progress& progress, std::uint64_t total);
    /// Draws nothing: for work beside what the bar shows, which has to ask for Cancel all the same.
    explicit ByteProgress(platform::Progress& progress);

    void advance(std::uint64_t bytes);
    void finish();
    bool cancelled() { return progress_.cancelled(); }

  private:
    platform::Progress& progress_;
    std::uint64_t total_;
    std::uint64_t done_ = 0;
    std::uint64_t drawn_ = 0;
    std::uint64_t stride_;
};

}  // namespace corvalence::files
