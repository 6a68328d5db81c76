#include "schedule/schedule_list.h"

#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::schedule {

std::string ScheduleList::path() const {
    return vault_.configuration.folder(settings::key::kScheduleDirectory) + "Database Checking Schedule";
}

void ScheduleList::databaseDeleted(const std::string& database) {
    if (!vault_.platform.files.status(path(), platform::Follow::Yes)) return;  // no list, no line in it
    const crypto::SecretText text =
        crypto::unsealText(vault_.platform.files, path(), vault_.session.key,
                           vault_.session.chains.ScheduleIV, crypto::kUnsealSchedule);
    crypto::SecretText kept;
    bool dropped = false;
    for (std::string_view rest = text.view(); !rest.empty();) {
        const std::size_t feed = rest.find('\n');
        const std::string_view line = rest.substr(0, feed == std::string_view::npos ? feed : feed + 1);
        const std::size_t pathEnd = line.find(base::kSeparator);
        const bool isRecord = pathEnd != std::string_view::npos && pathEnd > 0;
        if (base::isStaleTail(rest.size()) && !isRecord) break;
        rest.remove_prefix(line.size());
        if (vault_.platform.paths.beginsWith(line, database)) {
            dropped = true;
        } else {
            kept.append(line);
        }
    }
    if (dropped) {
        crypto::sealFile(vault_.working, kept.view(), path(), vault_.session.key,
                         vault_.session.chains.ScheduleIV);
    }
}

}  // namespace corvalence::schedule
