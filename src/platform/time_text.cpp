#include "platform/time_text.h"

namespace corvalence::platform {

std::string formatFileTime(Clock& clock, base::FileTime time) {
    return base::timeText(clock.local(time));
}

}  // namespace corvalence::platform
