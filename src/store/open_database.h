#pragma once

#include <cstdint>
#include <string>

#include "store/index_record.h"

namespace corvalence::store {

/// The open database: what its index record said when its integrity had been proved.
struct OpenDatabaseContext {
    IndexRecord record;

    const std::string& path() const noexcept { return record.path; }
    crypto::DigestCode digest() const noexcept { return record.digest; }
    std::int64_t backupNumber() const noexcept { return record.number; }
};

}  // namespace corvalence::store
