#include "cli/record_json.h"

#include "files/file_texts.h"

namespace corvalence::cli {

void writeRecordMembers(JsonWriter& json, const files::FileRecord& record, std::uint64_t size) {
    json.text("digest", record.digest);
    json.number("size", size);
    json.text("attributes", files::attributeText(record.attributes));
    json.time("modified", record.written);
    json.time("created", record.created);
}

}  // namespace corvalence::cli
