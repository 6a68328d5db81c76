#include "files/byte_progress.h"

#include <algorithm>

#include "files/file_texts.h"

namespace corvalence::files {

namespace {
constexpr std::uint64_t kFine = 64000;
constexpr std::uint64_t kCoarse = 640000;
}  // namespace

ByteProgress::ByteProgress(platform::Progress& progress, std::uint64_t total)
    : progress_(progress), total_(total), stride_(kFine) {
    // Below one step of the bar per 64000 bytes the bar moves by ten times as many bytes.
    if (total_ / 64 > 65'000'000) stride_ = kCoarse;
    progress_.label(remainingText(total_));
}

ByteProgress::ByteProgress(platform::Progress& progress)
    : progress_(progress), total_(0), stride_(UINT64_MAX) {}

void ByteProgress::advance(std::uint64_t bytes) {
    done_ += bytes;
    if (done_ - drawn_ < stride_) return;
    drawn_ = done_;
    const std::uint64_t shown = std::min(done_, total_);
    const double part = total_ == 0 ? 1.0 : static_cast<double>(shown) / static_cast<double>(total_);
    progress_.bar(static_cast<std::uint32_t>(part * platform::Progress::kSteps));
    progress_.label(remainingText(total_ - shown));
}

void ByteProgress::finish() {
    progress_.bar(platform::Progress::kSteps);
    progress_.label(remainingText(0));
}

}  // namespace corvalence::files
