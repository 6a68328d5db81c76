#pragma once

#include <ostream>

#include "files/changed_file_details.h"
#include "platform/clock.h"

namespace corvalence::cli {

/// The lines about a changed file: then and now of everything that a record holds. A star stands before what
/// differs.
void writeChangedFile(std::ostream& out, const files::ChangedFileDetails& details, platform::Clock& clock);

}  // namespace corvalence::cli
