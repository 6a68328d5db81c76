#pragma once

#include <cstdint>

#include "cli/json_writer.h"
#include "files/file_record.h"

namespace corvalence::cli {

/// The members of a record but its path. `size` has all bits, where they are known.
void writeRecordMembers(JsonWriter& json, const files::FileRecord& record, std::uint64_t size);

}  // namespace corvalence::cli
